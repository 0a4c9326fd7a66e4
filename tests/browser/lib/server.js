// A static HTTP server on 127.0.0.1 for a staged album.
'use strict';

const fs = require('fs');
const http = require('http');
const path = require('path');

const TYPES = {
  '.htm': 'text/html', '.html': 'text/html', '.js': 'text/javascript', '.gif': 'image/gif',
  '.png': 'image/png', '.jpg': 'image/jpeg', '.css': 'text/css', '.class': 'application/java-vm',
};

// Resolves to { base, close() } once it listens on a free port.
function serve(root) {
  const server = http.createServer((req, res) => {
    // Browsers ask for an icon that albums do not have.
    if (req.url === '/favicon.ico') {
      res.writeHead(204).end();
      return;
    }
    let file;
    try {
      file = path.join(root, decodeURIComponent(new URL(req.url, 'http://x').pathname));
    } catch (e) {
      res.writeHead(400).end();
      return;
    }
    if (!file.startsWith(root + path.sep) || !fs.existsSync(file) || !fs.statSync(file).isFile()) {
      res.writeHead(404, { 'Content-Type': 'text/plain' }).end('not found');
      return;
    }
    // No charset: the pages are read in the browser's default, Windows-1252.
    res.writeHead(200, {
      'Content-Type': TYPES[path.extname(file).toLowerCase()] || 'application/octet-stream',
      'Cache-Control': 'no-store',
    });
    fs.createReadStream(file).pipe(res);
  });
  return new Promise((resolve) => {
    server.listen(0, '127.0.0.1', () => {
      const { port } = server.address();
      resolve({
        base: `http://127.0.0.1:${port}/`,
        close: () => new Promise((done) => server.close(done)),
      });
    });
  });
}

module.exports = { serve };
