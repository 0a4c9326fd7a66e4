// Tree menu of the HTML album.
//
// code.html loads this file in the hidden frame "code", sets the MTM...
// variables, adds one MTMenuItem per page to an MTMenu and calls
// MTMStartMenu() when it has loaded. The tree is then drawn into the frame
// named by MTMenuFrame, in place of the plain list menu.html, and marks the
// page that the frame named by the items' target shows.
//
// Where the browser keeps the frames apart (pages opened as local files)
// nothing is touched and menu.html stays as it is: it works on its own.
// The tree waits for the frames' load events, so MTMTimeOut is not needed.

/* exported MTMenu, MTMenuItem, IconList, MTMIcon, MTMStartMenu */

function MTMenu() {
  this.items = [];
}

MTMenu.prototype.MTMAddItem = function (item) {
  this.items.push(item);
  return item;
};

// The short form: addItem(text, url, target, tooltip, icon).
MTMenu.prototype.addItem = function (text, url, target, tooltip, icon) {
  return this.MTMAddItem(
    text instanceof MTMenuItem ? text : new MTMenuItem(text, url, target, tooltip, icon),
  );
};

function MTMenuItem(text, url, target, tooltip, icon) {
  this.text = text == null ? '' : String(text);
  this.url = url == null ? '' : String(url);
  this.target = target == null ? '' : String(target);
  this.tooltip = tooltip == null ? '' : String(tooltip);
  this.icon = icon == null ? '' : String(icon);
  this.submenu = null;
  this.expanded = false;
  this.openIcon = '';
  this.closedIcon = '';
}

MTMenuItem.prototype.MTMakeSubmenu = function (menu, isExpanded, collapseIcon, expandIcon) {
  this.submenu = menu;
  this.expanded = !!isExpanded;
  this.openIcon = collapseIcon || '';
  this.closedIcon = expandIcon || '';
  return menu;
};

function IconList() {
  this.items = [];
}

IconList.prototype.addIcon = function (icon) {
  this.items.push(icon);
  return icon;
};

// An icon for the links whose URL matches: type "pre" (starts with),
// "post" (ends with) or anything else (contains), ignoring case.
function MTMIcon(iconfile, match, type) {
  this.file = iconfile == null ? '' : String(iconfile);
  // A quote inside a configured pattern is a slip of the configuration.
  this.match = (match == null ? '' : String(match)).replace(/'/g, '').toLowerCase();
  this.type = (type == null ? '' : String(type)).toLowerCase();
}

MTMIcon.prototype.matches = function (url) {
  var u = String(url).toLowerCase();
  if (!this.match) return false;
  if (this.type === 'pre') return u.indexOf(this.match) === 0;
  if (this.type === 'post') return u.length >= this.match.length &&
    u.lastIndexOf(this.match) === u.length - this.match.length;
  return u.indexOf(this.match) >= 0;
};

// The running tree, one per code frame.
var MTMTree = null;

function MTMStartMenu() {
  var menu = MTMConfig('menu', null);
  if (!(menu instanceof MTMenu)) return;
  if (MTMTree) {
    MTMTree.render();
    return;
  }
  MTMTree = new MTMTreeView(menu);
  MTMTree.start();
}

// Reads a configuration variable of code.html, or its default.
function MTMConfig(name, fallback) {
  var v = window[name];
  return v === undefined || v === null ? fallback : v;
}

function MTMTreeView(menu) {
  this.menu = menu;
  this.menuHost = null; // the <frame> element showing the tree
  this.current = null; // the item of the page shown
  this.watched = []; // target frames whose pages the tree follows
  this.rootCollapsed = false;
  this.rows = []; // {item, element} of each drawn row
}

// Finds a frame element by name in the frameset that holds this frame.
// Returns null where the browser forbids the access.
MTMTreeView.prototype.frameElement = function (name) {
  var docs = [];
  try {
    if (window.parent !== window) docs.push(window.parent.document);
    if (window.top !== window.parent) docs.push(window.top.document);
  } catch (e) {
    return null;
  }
  for (var i = 0; i < docs.length; i++) {
    var list = docs[i].getElementsByName(name);
    for (var k = 0; k < list.length; k++) {
      var tag = list[k].tagName.toLowerCase();
      if (tag === 'frame' || tag === 'iframe') return list[k];
    }
  }
  return null;
};

MTMTreeView.prototype.start = function () {
  var self = this;
  this.menuHost = this.frameElement(String(MTMConfig('MTMenuFrame', 'menu')));
  if (!this.menuHost) return;
  // Each new load of the menu frame (menu.html again) gets the tree again.
  this.menuHost.addEventListener('load', function () {
    self.render();
  });
  if (this.menuDocumentReady()) this.render();
  this.watchTargets();
};

MTMTreeView.prototype.menuDocumentReady = function () {
  try {
    var doc = this.menuHost.contentDocument;
    return !!doc && doc.readyState === 'complete' && doc.URL !== 'about:blank' && !!doc.body;
  } catch (e) {
    return false;
  }
};

// Follows the pages of every frame that items open into.
MTMTreeView.prototype.watchTargets = function () {
  var self = this;
  var names = {};
  this.eachItem(this.menu, function (item) {
    var t = item.target;
    if (t && t.charAt(0) !== '_') names[t] = true;
  });
  var missing = false;
  for (var name in names) {
    if (this.watched.indexOf(name) >= 0) continue;
    var host = this.frameElement(name);
    if (!host) {
      missing = true;
      continue;
    }
    this.watched.push(name);
    host.addEventListener('load', function () {
      self.track();
    });
  }
  // The frameset may still be parsing; it is complete when it has loaded.
  if (missing) {
    try {
      window.parent.addEventListener('load', function () {
        self.watchTargets();
        self.track();
      });
    } catch (e) {
      /* kept apart: nothing to follow */
    }
  }
  this.track();
};

MTMTreeView.prototype.eachItem = function (menu, fn) {
  for (var i = 0; i < menu.items.length; i++) {
    fn(menu.items[i]);
    if (menu.items[i].submenu) this.eachItem(menu.items[i].submenu, fn);
  }
};

// Marks the item whose page a watched frame shows.
MTMTreeView.prototype.track = function () {
  var shown = [];
  for (var i = 0; i < this.watched.length; i++) {
    var host = this.frameElement(this.watched[i]);
    try {
      if (host && host.contentWindow) shown.push(MTMCleanUrl(host.contentWindow.location.href));
    } catch (e) {
      /* a page of another site: nothing of ours is shown */
    }
  }
  var found = null;
  var self = this;
  this.eachItem(this.menu, function (item) {
    if (found || !item.url) return;
    var url = MTMCleanUrl(self.absoluteUrl(item.url));
    for (var k = 0; k < shown.length; k++) {
      if (shown[k] === url || shown[k].toLowerCase() === url.toLowerCase()) found = item;
    }
  });
  this.mark(found);
};

MTMTreeView.prototype.absoluteUrl = function (url) {
  try {
    var doc = this.menuHost.contentDocument;
    return new URL(url, doc.baseURI).href;
  } catch (e) {
    return new URL(url, document.baseURI).href;
  }
};

function MTMCleanUrl(href) {
  var s = String(href).replace(/#.*$/, '');
  try {
    return decodeURI(s);
  } catch (e) {
    return s;
  }
}

MTMTreeView.prototype.mark = function (item) {
  this.current = item;
  if (item && this.openPathTo(this.menu, item)) {
    this.render();
    return;
  }
  // Only the classes change: a link being clicked must stay in place, or
  // the browser would not follow it.
  for (var i = 0; i < this.rows.length; i++) {
    var row = this.rows[i];
    var on = row.item === item;
    if (on !== row.element.classList.contains('mtm-current')) row.element.classList.toggle('mtm-current', on);
    // In a long album the marked entry comes into sight.
    if (on && row.element.scrollIntoView) row.element.scrollIntoView({ block: 'nearest' });
  }
};

// Opens the submenus on the way to an item so that its mark is visible.
// Returns true when something had to be opened.
MTMTreeView.prototype.openPathTo = function (menu, item) {
  var path = [];
  var find = function (m) {
    for (var i = 0; i < m.items.length; i++) {
      if (m.items[i] === item) return true;
      if (m.items[i].submenu) {
        path.push(m.items[i]);
        if (find(m.items[i].submenu)) return true;
        path.pop();
      }
    }
    return false;
  };
  if (!find(menu)) return false;
  var changed = this.rootCollapsed;
  this.rootCollapsed = false;
  for (var k = 0; k < path.length; k++) {
    changed = changed || !path[k].expanded;
    path[k].expanded = true;
  }
  return changed;
};

MTMTreeView.prototype.toggle = function (item, siblings) {
  item.expanded = !item.expanded;
  if (item.expanded && MTMConfig('MTMSubsAutoClose', false)) {
    for (var i = 0; i < siblings.length; i++) if (siblings[i] !== item) siblings[i].expanded = false;
  }
  this.render();
};

MTMTreeView.prototype.image = function (name) {
  return String(MTMConfig('MTMenuImageDirectory', 'menu-images/')) + name;
};

function MTMFontSize(css, legacy) {
  if (css) return String(css);
  var sizes = { '-3': 'xx-small', '-2': 'x-small', '-1': 'small', '0': 'medium', '+0': 'medium',
    '1': 'large', '+1': 'large', '2': 'x-large', '+2': 'x-large', '3': 'xx-large', '+3': 'xx-large' };
  return sizes[String(legacy)] || 'small';
}

MTMTreeView.prototype.styleText = function () {
  var bg = String(MTMConfig('MTMBGColor', '#ffffff'));
  var background = String(MTMConfig('MTMBackground', ''));
  var link = String(MTMConfig('MTMLinkColor', '#0000ff'));
  var hover = String(MTMConfig('MTMAhoverColor', '#ff0000'));
  var track = String(MTMConfig('MTMTrackColor', '#000000'));
  var text = String(MTMConfig('MTMTextColor', '#000000'));
  var font = String(MTMConfig('MTMenuFont', 'Arial, Helvetica, sans-serif'));
  var size = MTMFontSize(MTMConfig('MTMenuCSSize', ''), MTMConfig('MTMenuFontSize', '-1'));
  var rootFont = String(MTMConfig('MTMRootFont', font));
  var rootSize = MTMFontSize(MTMConfig('MTMRootCSSize', ''), MTMConfig('MTMRootFontSize', '-1'));
  var rootColor = String(MTMConfig('MTMRootColor', text));
  var width = String(MTMConfig('MTMTableWidth', '100%'));
  var q = function (s) {
    return JSON.stringify(String(s));
  };
  return [
    'html, body { margin: 0; padding: 0; }',
    'body { background-color: ' + bg + ';' +
      (background ? ' background-image: url(' + q(this.image(background)) + ');' : '') +
      ' color: ' + text + '; font-family: ' + font + '; }',
    '.mtm-tree { width: ' + width + '; padding: 6px 0 12px 4px; box-sizing: border-box; }',
    '.mtm-row { display: flex; align-items: center; height: 20px; white-space: nowrap;' +
      ' font-size: ' + size + '; }',
    '.mtm-row img { display: block; width: 20px; height: 20px; flex: none; }',
    '.mtm-row img.mtm-toggle, .mtm-toggle-text { cursor: pointer; }',
    '.mtm-label { margin-left: 3px; padding: 0 5px; border-radius: 3px; line-height: 18px;' +
      ' overflow: hidden; text-overflow: ellipsis; }',
    '.mtm-row.mtm-root { font-size: ' + rootSize + '; margin-bottom: 2px; }',
    '.mtm-root .mtm-label { font-family: ' + rootFont + '; font-weight: bold; color: ' + rootColor + '; }',
    'a.mtm-label { color: ' + link + '; text-decoration: none; }',
    'a.mtm-label:hover, a.mtm-label:focus { color: ' + hover + '; text-decoration: underline; }',
    '.mtm-sub.mtm-open { color: ' + String(MTMConfig('MTMSubExpandColor', text)) + '; }',
    '.mtm-sub.mtm-closed { color: ' + String(MTMConfig('MTMSubClosedColor', text)) + '; }',
    '.mtm-current .mtm-label, .mtm-current a.mtm-label { color: ' + track +
      '; font-weight: bold; background: rgba(127, 127, 127, 0.28); }',
  ].join('\n');
};

// Draws the whole tree into the menu frame, replacing what it shows.
MTMTreeView.prototype.render = function () {
  var doc;
  try {
    doc = this.menuHost && this.menuHost.contentDocument;
  } catch (e) {
    return;
  }
  if (!doc || !doc.body || !this.menuDocumentReady()) return;
  var head = doc.head || doc.getElementsByTagName('head')[0];
  if (!doc.getElementById('mtm-style')) {
    doc.title = String(MTMConfig('MTMenuText', doc.title));
    var style = doc.createElement('style');
    style.id = 'mtm-style';
    style.textContent = this.styleText();
    head.appendChild(style);
    if (MTMConfig('MTMLinkedSS', false)) {
      var link = doc.createElement('link');
      link.rel = 'stylesheet';
      link.href = String(MTMConfig('MTMSSHREF', ''));
      head.appendChild(link);
    }
    // menu.html's own colours give way to the tree's.
    var attrs = ['bgcolor', 'text', 'link', 'vlink', 'alink', 'background'];
    for (var i = 0; i < attrs.length; i++) doc.body.removeAttribute(attrs[i]);
  }
  var scroll = doc.scrollingElement ? doc.scrollingElement.scrollTop : 0;
  this.rows = [];
  var tree = doc.createElement('div');
  tree.className = 'mtm-tree';
  tree.appendChild(this.rootRow(doc));
  if (!this.rootCollapsed) this.addRows(doc, tree, this.menu, []);
  while (doc.body.firstChild) doc.body.removeChild(doc.body.firstChild);
  doc.body.appendChild(tree);
  if (doc.scrollingElement) doc.scrollingElement.scrollTop = scroll;
  var marked = doc.querySelector('.mtm-current');
  if (marked && marked.scrollIntoView) marked.scrollIntoView({ block: 'nearest' });
};

MTMTreeView.prototype.rootRow = function (doc) {
  var self = this;
  var row = doc.createElement('div');
  row.className = 'mtm-row mtm-root';
  var icon = doc.createElement('img');
  icon.src = this.image(String(MTMConfig('MTMRootIcon', 'menu_new_root.gif')));
  icon.alt = '';
  icon.className = 'mtm-toggle';
  var label = doc.createElement('span');
  label.className = 'mtm-label mtm-toggle-text';
  label.textContent = String(MTMConfig('MTMenuText', ''));
  label.title = label.textContent;
  var toggle = function () {
    self.rootCollapsed = !self.rootCollapsed;
    self.render();
  };
  icon.addEventListener('click', toggle);
  label.addEventListener('click', toggle);
  row.appendChild(icon);
  row.appendChild(label);
  return row;
};

// One row per item; `lines` says for each outer level whether a line
// continues below (a bar) or not (blank).
MTMTreeView.prototype.addRows = function (doc, parent, menu, lines) {
  var plus = MTMConfig('MTMSubsGetPlus', true);
  for (var i = 0; i < menu.items.length; i++) {
    var item = menu.items[i];
    var last = i === menu.items.length - 1;
    var row = doc.createElement('div');
    row.className = 'mtm-row' + (item === this.current ? ' mtm-current' : '');
    for (var k = 0; k < lines.length; k++) {
      var piece = doc.createElement('img');
      piece.alt = '';
      if (lines[k]) piece.src = this.image('menu_bar.gif');
      else piece.style.visibility = 'hidden';
      row.appendChild(piece);
    }
    var connector = doc.createElement('img');
    connector.alt = '';
    var shape = last ? 'menu_corner' : 'menu_tee';
    if (item.submenu && plus) {
      connector.src = this.image(shape + (item.expanded ? '_minus.gif' : '_plus.gif'));
      connector.className = 'mtm-toggle';
      connector.addEventListener('click', this.toggler(item, menu.items));
    } else {
      connector.src = this.image(shape + '.gif');
    }
    row.appendChild(connector);
    var icon = doc.createElement('img');
    icon.alt = '';
    icon.src = this.image(this.iconFor(item));
    row.appendChild(icon);
    row.appendChild(this.label(doc, item, menu.items));
    parent.appendChild(row);
    this.rows.push({ item: item, element: row });
    if (item.submenu && item.expanded) this.addRows(doc, parent, item.submenu, lines.concat([!last]));
  }
};

MTMTreeView.prototype.toggler = function (item, siblings) {
  var self = this;
  return function (event) {
    event.preventDefault();
    self.toggle(item, siblings);
  };
};

MTMTreeView.prototype.iconFor = function (item) {
  if (item.submenu) {
    if (item.expanded) return item.openIcon || 'menu_folder_open.gif';
    return item.closedIcon || 'menu_folder_close.gif';
  }
  if (item.icon) return item.icon;
  var list = MTMConfig('MTMIconList', null);
  if (list && list.items) {
    for (var i = 0; i < list.items.length; i++) {
      if (list.items[i].matches && list.items[i].matches(item.url)) return list.items[i].file;
    }
  }
  return 'menu_link_default.gif';
};

MTMTreeView.prototype.label = function (doc, item, siblings) {
  var self = this;
  var label;
  if (item.url) {
    label = doc.createElement('a');
    label.href = item.url;
    if (item.target) label.target = item.target;
    label.addEventListener('click', function () {
      // The frame's load moves the mark too; this shows it at once.
      if (!item.target || item.target.charAt(0) !== '_') self.mark(item);
      if (item.submenu && MTMConfig('MTMEmulateWE', false) && !item.expanded) {
        item.expanded = true;
        // Redrawn after the click, which needs its link in place.
        setTimeout(function () {
          self.render();
        }, 0);
      }
    });
  } else {
    label = doc.createElement('span');
    if (item.submenu) {
      label.className = 'mtm-toggle-text';
      label.addEventListener('click', this.toggler(item, siblings));
    }
  }
  label.className = 'mtm-label' + (label.className ? ' ' + label.className : '') +
    (item.submenu ? ' mtm-sub ' + (item.expanded ? 'mtm-open' : 'mtm-closed') : '');
  label.textContent = item.text;
  label.title = item.tooltip || item.text;
  return label;
};
