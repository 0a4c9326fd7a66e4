// Search of the HTML album, without a server.
//
// A search page loads this file and then daten.js, the album's records:
// p[i].kw (the words of the page's texts, split by splitter), .url,
// .Bilder (picture names), .title and .desc. The form "mf" calls
// suche(text); the result replaces the page and wears the page's own body
// tag, which the album generator writes into the marked line below.

/* exported suche, splitter */

// The generator replaces the tag in this line by the page's body tag.
var bsSeitenBody = String.raw`<body>`;

// Splits a text into its words: runs of letters and digits.
function splitter(text) {
  if (text == null) return [];
  var words = String(text).split(/[^\p{L}\p{N}]+/u);
  var out = [];
  for (var i = 0; i < words.length; i++) if (words[i] !== '') out.push(words[i]);
  return out;
}

// The words of a record that the chosen fields offer to the search.
function bsWoerter(record, opt) {
  var words = [];
  var add = function (value) {
    words = words.concat(Array.isArray(value) ? value : splitter(value));
  };
  if (opt.text) add(record.kw);
  if (opt.bilder) add(record.Bilder);
  if (opt.name) {
    add(String(record.url || '').replace(/\.html?$/i, ''));
    add(record.title);
  }
  return words;
}

// Does one search term match one word, as the options say?
function bsPasst(word, term, opt) {
  var w = opt.gross ? word : word.toLowerCase();
  if (opt.anfang && opt.ende) return w === term;
  if (opt.anfang) return w.indexOf(term) === 0;
  if (opt.ende) return w.length >= term.length && w.lastIndexOf(term) === w.length - term.length;
  return w.indexOf(term) >= 0;
}

// The records that match. opt: bilder, text, name (fields searched),
// gross (upper and lower case count), anfang, ende (match at word
// beginnings, endings, both: whole words), modus "und" | "oder" | "nicht".
function bsSuche(eingabe, opt, records) {
  var terms = splitter(eingabe);
  if (!opt.gross) terms = terms.map(function (t) { return t.toLowerCase(); });
  var found = [];
  if (terms.length === 0) return found;
  for (var i = 0; i < records.length; i++) {
    var words = bsWoerter(records[i], opt);
    var hits = 0;
    for (var k = 0; k < terms.length; k++) {
      for (var n = 0; n < words.length; n++) {
        if (bsPasst(words[n], terms[k], opt)) {
          hits++;
          break;
        }
      }
    }
    var modus = opt.modus || 'und';
    if ((modus === 'und' && hits === terms.length) || (modus === 'oder' && hits > 0) ||
        (modus === 'nicht' && hits === 0)) {
      found.push(records[i]);
    }
  }
  return found;
}

// The options as the form "mf" sets them.
function bsOptionen(form) {
  var checked = function (name, fallback) {
    var el = form && form.elements ? form.elements[name] : null;
    return el ? !!el.checked : fallback;
  };
  var modus = 'und';
  var radios = form && form.elements ? form.elements.r : null;
  if (radios) {
    var list = radios.length !== undefined ? radios : [radios];
    for (var i = 0; i < list.length; i++) if (list[i].checked) modus = String(list[i].value);
  }
  return {
    bilder: checked('Bilder', true),
    text: checked('kw', true),
    name: checked('url', true),
    gross: checked('lc', false),
    anfang: checked('wa', true),
    ende: checked('we', false),
    modus: modus,
  };
}

function bsHtml(text) {
  return String(text == null ? '' : text)
    .replace(/&/g, '&amp;')
    .replace(/</g, '&lt;')
    .replace(/>/g, '&gt;')
    .replace(/"/g, '&quot;');
}

// The form's buttons tell the language of the page.
function bsEnglisch(doc) {
  var inputs = doc.getElementsByTagName ? doc.getElementsByTagName('input') : [];
  for (var i = 0; i < inputs.length; i++) {
    if (/start search/i.test(String(inputs[i].value))) return true;
  }
  return false;
}

// The whole result page as text.
function bsErgebnisSeite(eingabe, opt, found, englisch, bodyTag, zurueck) {
  var t = englisch
    ? { title: 'Search result', none: 'No page found for', one: '1 page found for',
        many: ' pages found for', again: 'New search', empty: 'Please fill in a search text.',
        mode: { und: 'and', oder: 'or', nicht: 'not' } }
    : { title: 'Suchergebnis', none: 'Keine Seite gefunden f\u00fcr', one: '1 Seite gefunden f\u00fcr',
        many: ' Seiten gefunden f\u00fcr', again: 'Neue Suche',
        empty: 'Bitte mindestens einen Suchbegriff eingeben.',
        mode: { und: 'UND', oder: 'ODER', nicht: 'NICHT' } };
  var summary;
  if (splitter(eingabe).length === 0) summary = t.empty;
  else {
    summary = (found.length === 0 ? t.none : found.length === 1 ? t.one : found.length + t.many) +
      ' \u201e' + bsHtml(eingabe) + '\u201c (' + (t.mode[opt.modus] || opt.modus) + ')';
  }
  var html = [
    '<html><head><title>' + t.title + '</title>',
    '<style>',
    '.bs-treffer { position: relative; margin: 24px 40px; max-width: 640px; padding: 18px 24px;',
    '  font-family: Arial, Helvetica, sans-serif; font-size: 14px; color: #222;',
    '  background: rgba(255, 255, 255, 0.86); border-radius: 8px; box-shadow: 0 2px 10px rgba(0,0,0,.25); }',
    '.bs-treffer h1 { font-size: 20px; margin: 0 0 6px; }',
    '.bs-treffer .bs-summe { color: #555; margin: 0 0 14px; }',
    '.bs-treffer ol { margin: 0; padding-left: 22px; }',
    '.bs-treffer li { margin: 0 0 12px; }',
    '.bs-treffer li a { font-size: 16px; font-weight: bold; }',
    '.bs-treffer .bs-desc { display: block; margin: 2px 0; }',
    '.bs-treffer .bs-url { display: block; color: #2a7a3a; font-size: 12px; }',
    '</style></head>',
    bodyTag,
    '<div class="bs-treffer">',
    '<h1>' + t.title + '</h1>',
    '<p class="bs-summe">' + summary + '</p>',
  ];
  if (found.length) {
    html.push('<ol>');
    for (var i = 0; i < found.length; i++) {
      var r = found[i];
      html.push('<li><a href="' + bsHtml(r.url) + '">' + bsHtml(r.title || r.url) + '</a>' +
        '<span class="bs-desc">' + bsHtml(r.desc) + '</span>' +
        '<span class="bs-url">' + bsHtml(r.url) + '</span></li>');
    }
    html.push('</ol>');
  }
  html.push('<p><a class="bs-neu" href="' + bsHtml(zurueck) + '">' + t.again + '</a></p>');
  html.push('</div>', '</body></html>');
  return html.join('\n');
}

// The page's body tag when the generator has not put it in.
function bsBodyTag(doc) {
  if (bsSeitenBody !== '<' + 'body>') return bsSeitenBody;
  var body = doc.body;
  if (!body || !body.attributes) return '<' + 'body>';
  var tag = '<' + 'body';
  for (var i = 0; i < body.attributes.length; i++) {
    var a = body.attributes[i];
    tag += ' ' + a.name + '="' + bsHtml(a.value) + '"';
  }
  return tag + '>';
}

// Called by the form: searches the album and shows the result in place of
// the search page.
function suche(eingabe) {
  var records = typeof p !== 'undefined' && p ? p : [];
  var opt = bsOptionen(document.mf || (document.forms && document.forms[0]));
  var found = bsSuche(eingabe, opt, records);
  var page = bsErgebnisSeite(eingabe, opt, found, bsEnglisch(document), bsBodyTag(document),
    String(document.location.href).replace(/#.*$/, ''));
  document.open();
  document.write(page);
  document.close();
}

// Enter in the search box searches too, instead of sending the form.
if (typeof document !== 'undefined' && document.addEventListener) {
  document.addEventListener('DOMContentLoaded', function () {
    var form = document.mf;
    if (!form || !form.addEventListener) return;
    form.addEventListener('submit', function (event) {
      event.preventDefault();
      suche(form.elements.eingabe ? form.elements.eingabe.value : '');
    });
  });
}
