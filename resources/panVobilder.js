// Full view of pictures in a window of their own. A page that loads this
// file opens each link to a picture (a "full view" link of a picture) in a
// separate window that shows the picture large on a dark ground: fitted to
// the window, a click shows it at its own size, Escape closes the window.
(function () {
  'use strict';

  var pictureFile = /\.(jpe?g|png|gif|bmp|webp)$/i;

  function escapeHtml(text) {
    return String(text)
      .replace(/&/g, '&amp;')
      .replace(/</g, '&lt;')
      .replace(/>/g, '&gt;')
      .replace(/"/g, '&quot;');
  }

  function pageText(href, title) {
    return [
      '<!DOCTYPE html>',
      '<html><head><meta charset="utf-8"><title>' + escapeHtml(title) + '</title>',
      '<style>',
      'html, body { margin: 0; height: 100%; background: #101214; }',
      'body { display: flex; align-items: center; justify-content: center; overflow: auto; }',
      'img { display: block; max-width: 100vw; max-height: 100vh; object-fit: contain; cursor: zoom-in;',
      '  box-shadow: 0 0 40px rgba(0, 0, 0, 0.6); }',
      'body.bs-natural { display: block; }',
      'body.bs-natural img { max-width: none; max-height: none; margin: auto; cursor: zoom-out; }',
      '</style></head>',
      '<body><img id="bs-vollbild" src="' + escapeHtml(href) + '" alt="' + escapeHtml(title) + '"></body></html>',
    ].join('\n');
  }

  // Opens the picture at href in the full view window; true when it opened.
  function vollbild(href, title) {
    var w = Math.round((window.screen && window.screen.availWidth ? window.screen.availWidth : 1024) * 0.85);
    var h = Math.round((window.screen && window.screen.availHeight ? window.screen.availHeight : 768) * 0.85);
    var win = window.open('', 'bsvollbild', 'width=' + w + ',height=' + h + ',resizable=yes,scrollbars=yes');
    if (!win) return false;
    var doc = win.document;
    doc.open();
    doc.write(pageText(href, title));
    doc.close();
    var img = doc.getElementById('bs-vollbild');
    img.addEventListener('click', function () {
      doc.body.classList.toggle('bs-natural');
    });
    doc.addEventListener('keydown', function (e) {
      if (e.key === 'Escape') win.close();
    });
    win.focus();
    return true;
  }

  document.addEventListener('click', function (e) {
    if (e.defaultPrevented || e.button !== 0 || e.ctrlKey || e.shiftKey || e.metaKey || e.altKey) return;
    var node = e.target;
    while (node && !(node.tagName && node.tagName.toLowerCase() === 'a' && node.getAttribute('href'))) {
      node = node.parentNode;
    }
    if (!node) return;
    var url;
    try {
      url = new URL(node.getAttribute('href'), document.baseURI);
    } catch (err) {
      return;
    }
    if (!pictureFile.test(url.pathname)) return;
    var name = decodeURIComponent(url.pathname.replace(/^.*\//, ''));
    if (vollbild(url.href, name)) e.preventDefault();
  });

  window.bsVollbild = vollbild;
})();
