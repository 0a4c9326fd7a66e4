// Picture effects of the HTML album for today's browsers, which run no
// applets. Each <applet> of the page is replaced by a canvas of the same
// box that plays the applet's effect from the applet's own <param>s:
//   bslake  water reflection under the picture (speed, rahmenbreite)
//   bsrain  rain, or snow with snowmodus 1 (speed, rahmenbreite, anzahl)
//   bspano  picture strip scrolling sideways (speed, rahmenbreite, anzahl)
//   pan360  panorama viewer: URL0..URLn, drag to pan, wheel to zoom,
//           hotspots lead to the other pictures
// URL and target make a click on the effect follow the link.
// The page loads this file as its last script; it needs no library.
(function () {
  'use strict';

  var running = [];

  // The params of an applet, by lower-case name.
  function appletParams(applet) {
    var out = {};
    var list = applet.getElementsByTagName('param');
    for (var i = 0; i < list.length; i++) {
      var name = list[i].getAttribute('name');
      if (name != null && !(name.toLowerCase() in out)) {
        out[name.toLowerCase()] = list[i].getAttribute('value') || '';
      }
    }
    return out;
  }

  function number(value, fallback) {
    var v = parseFloat(String(value == null ? '' : value).trim().replace(',', '.'));
    return isFinite(v) ? v : fallback;
  }

  function clamp(v, lo, hi) {
    return Math.max(lo, Math.min(hi, v));
  }

  function loadPicture(src, onload, onerror) {
    var img = new Image();
    img.onload = function () {
      onload(img);
    };
    img.onerror = function () {
      if (onerror) onerror();
    };
    img.src = src;
    return img;
  }

  // Follows an effect's link as its target says: "_self" (or nothing),
  // "_top", "_parent", "_blank" or the name of a frame.
  function follow(url, target) {
    var where = target ? String(target) : '_self';
    var href = new URL(url, document.baseURI).href;
    if (where.toLowerCase() === '_self') window.location.href = href;
    else if (where.toLowerCase() === '_top') window.top.location.href = href;
    else if (where.toLowerCase() === '_parent') window.parent.location.href = href;
    else window.open(href, where);
  }

  // The canvas in place of the applet, sharp on high-density screens.
  function makeCanvas(applet, kind) {
    var parent = applet.parentNode;
    var w = Math.max(1, Math.round(number(applet.getAttribute('width'), parent ? parent.clientWidth : 100)));
    var h = Math.max(1, Math.round(number(applet.getAttribute('height'), parent ? parent.clientHeight : 100)));
    var canvas = document.createElement('canvas');
    var ratio = Math.max(1, Math.min(3, window.devicePixelRatio || 1));
    canvas.width = Math.round(w * ratio);
    canvas.height = Math.round(h * ratio);
    canvas.style.width = w + 'px';
    canvas.style.height = h + 'px';
    canvas.style.display = 'block';
    canvas.className = 'bseffect';
    canvas.setAttribute('data-effect', kind);
    var ctx = canvas.getContext('2d');
    ctx.setTransform(ratio, 0, 0, ratio, 0, 0);
    parent.replaceChild(canvas, applet);
    return { canvas: canvas, ctx: ctx, w: w, h: h };
  }

  // The area inside the picture's frame, where the effect plays.
  function innerBox(box, frame) {
    var f = clamp(Math.round(number(frame, 0)), 0, Math.floor(Math.min(box.w, box.h) / 2) - 1);
    return { x: f, y: f, w: box.w - 2 * f, h: box.h - 2 * f };
  }

  function placeholder(ctx, box) {
    var g = ctx.createLinearGradient(0, 0, 0, box.h);
    g.addColorStop(0, '#8fb8d8');
    g.addColorStop(1, '#3d6680');
    ctx.fillStyle = g;
    ctx.fillRect(0, 0, box.w, box.h);
  }

  // The picture drawn once at the size of the box.
  function boxedPicture(box, img) {
    var c = document.createElement('canvas');
    c.width = box.w;
    c.height = box.h;
    c.getContext('2d').drawImage(img, 0, 0, box.w, box.h);
    return c;
  }

  function linkable(box, params) {
    if (!params.url) return;
    box.canvas.style.cursor = 'pointer';
    box.canvas.title = params.url;
    box.canvas.addEventListener('click', function () {
      follow(params.url, params.target);
    });
  }

  // --- lake: the upper half of the picture mirrored in moving water.
  function Lake(box, params) {
    var self = this;
    this.box = box;
    this.inner = innerBox(box, params.rahmenbreite);
    this.speed = Math.max(0, number(params.speed, 3));
    this.picture = null;
    if (params.picture) {
      loadPicture(params.picture, function (img) {
        self.picture = boxedPicture(box, img);
      });
    }
  }

  Lake.prototype.draw = function (t) {
    var ctx = this.box.ctx;
    var b = this.box;
    var r = this.inner;
    if (!this.picture) {
      placeholder(ctx, b);
      return;
    }
    ctx.drawImage(this.picture, 0, 0);
    var line = r.y + Math.floor(r.h / 2);
    var depth = r.y + r.h - line;
    var phase = (t / 1000) * (1 + this.speed) * 0.9;
    var amp = 3;
    ctx.save();
    ctx.beginPath();
    ctx.rect(r.x, line, r.w, depth);
    ctx.clip();
    for (var d = 0; d < depth; d++) {
      var k = d / depth;
      var wobble = Math.sin(d * 0.42 * (1 - 0.5 * k) - phase * 1.3) * (1 + 2.5 * k);
      var src = clamp(Math.round(line - 1 - d + wobble), r.y, line - 1);
      var shift = Math.sin(d * 0.21 + phase) * amp * (0.3 + k);
      ctx.drawImage(this.picture, r.x, src, r.w, 1, r.x + shift - amp, line + d, r.w + 2 * amp, 1);
    }
    var g = ctx.createLinearGradient(0, line, 0, line + depth);
    g.addColorStop(0, 'rgba(18, 60, 92, 0.16)');
    g.addColorStop(1, 'rgba(8, 28, 48, 0.5)');
    ctx.fillStyle = g;
    ctx.fillRect(r.x, line, r.w, depth);
    // Glints on the wave crests.
    for (var y = 0; y < depth; y += 2) {
      var glint = Math.pow(Math.max(0, Math.sin(y * 0.55 - phase * 1.7)), 12) * 0.09 * (1 - y / depth);
      if (glint > 0.01) {
        ctx.fillStyle = 'rgba(255, 255, 255, ' + glint.toFixed(3) + ')';
        ctx.fillRect(r.x, line + y, r.w, 1);
      }
    }
    ctx.fillStyle = 'rgba(255, 255, 255, 0.18)';
    ctx.fillRect(r.x, line, r.w, 1);
    ctx.restore();
  };

  // --- rain and snow falling over the picture.
  function Rain(box, params) {
    var self = this;
    this.box = box;
    this.inner = innerBox(box, params.rahmenbreite);
    this.snow = String(params.snowmodus || '').trim() === '1';
    this.speed = Math.max(0, number(params.speed, 3));
    var area = this.inner.w * this.inner.h;
    var count = Math.round(number(params.anzahl, 0));
    if (count <= 0) count = Math.round(area / (this.snow ? 400 : 250));
    count = clamp(count, 1, 5000);
    this.drops = [];
    // A fixed seed: the same page shows the same weather.
    var seed = 12345;
    var random = function () {
      seed = (seed * 1103515245 + 12345) & 0x7fffffff;
      return seed / 0x7fffffff;
    };
    for (var i = 0; i < count; i++) {
      var size = random();
      this.drops.push({
        x: random(),
        y: random(),
        size: size,
        v: this.snow ? (14 + 9 * this.speed) * (0.45 + 0.8 * size) : (170 + 55 * this.speed) * (0.75 + 0.5 * size),
        sway: random() * Math.PI * 2,
      });
    }
    this.picture = null;
    if (params.picture) {
      loadPicture(params.picture, function (img) {
        self.picture = boxedPicture(box, img);
      });
    }
  }

  Rain.prototype.draw = function (t) {
    var ctx = this.box.ctx;
    var r = this.inner;
    if (this.picture) ctx.drawImage(this.picture, 0, 0);
    else placeholder(ctx, this.box);
    var s = t / 1000;
    ctx.save();
    ctx.beginPath();
    ctx.rect(r.x, r.y, r.w, r.h);
    ctx.clip();
    var i;
    var d;
    if (this.snow) {
      ctx.fillStyle = 'rgba(255, 255, 255, 0.92)';
      ctx.beginPath();
      for (i = 0; i < this.drops.length; i++) {
        d = this.drops[i];
        var rad = 0.6 + 1.5 * d.size;
        var span = r.h + 2 * rad;
        var y = r.y - rad + ((d.y * span + d.v * s) % span);
        var x = r.x + ((d.x * r.w + Math.sin(s * 0.9 + d.sway) * 6 * (0.5 + d.size)) % r.w + r.w) % r.w;
        ctx.moveTo(x + rad, y);
        ctx.arc(x, y, rad, 0, Math.PI * 2);
      }
      ctx.fill();
    } else {
      ctx.strokeStyle = 'rgba(214, 228, 255, 0.6)';
      ctx.lineWidth = 1;
      ctx.beginPath();
      for (i = 0; i < this.drops.length; i++) {
        d = this.drops[i];
        var len = 7 + 9 * d.size;
        var fall = r.h + len;
        var yy = r.y - len + ((d.y * fall + d.v * s) % fall);
        var drift = 0.16 * (yy - r.y);
        var xx = r.x + ((d.x * r.w + drift) % r.w);
        ctx.moveTo(xx, yy);
        ctx.lineTo(xx + 0.16 * len, yy + len);
      }
      ctx.stroke();
    }
    ctx.restore();
  };

  // --- a picture strip scrolling sideways without end.
  function Pano(box, params) {
    var self = this;
    this.box = box;
    this.inner = innerBox(box, params.rahmenbreite);
    // speed is the pause between steps (in 10 ms), anzahl the step in pixels.
    var pause = Math.max(1, number(params.speed, 5)) * 10;
    var step = number(params.anzahl, 1) || 1;
    this.velocity = (step / pause) * 1000;
    this.picture = null;
    if (params.picture) {
      loadPicture(params.picture, function (img) {
        self.picture = img;
      });
    }
    this.base = null;
    this.boxed = null;
  }

  Pano.prototype.draw = function (t) {
    var ctx = this.box.ctx;
    var r = this.inner;
    if (!this.picture) {
      placeholder(ctx, this.box);
      return;
    }
    // The frame (if any) as it stands in the picture file.
    if (!this.boxed) this.boxed = boxedPicture(this.box, this.picture);
    ctx.drawImage(this.boxed, 0, 0);
    var img = this.picture;
    var sw = Math.max(1, (img.naturalWidth * r.h) / img.naturalHeight);
    var offset = (((this.velocity * t) / 1000) % sw + sw) % sw;
    ctx.save();
    ctx.beginPath();
    ctx.rect(r.x, r.y, r.w, r.h);
    ctx.clip();
    for (var x = r.x - offset; x < r.x + r.w; x += sw) ctx.drawImage(img, x, r.y, sw, r.h);
    ctx.restore();
  };

  // --- the panorama viewer.
  // URLn: picture, alternative, x, y, zoom ("Full", "Min" or a percentage),
  // four reserved numbers, 0, then ten hotspots of x1, x2, y1, y2 and the
  // number of the picture they lead to, in picture pixels; x and y are the
  // picture point at the top left corner of the view.
  function parseView(value) {
    var f = String(value).split(',');
    var view = {
      src: (f[0] || '').trim(),
      alt: (f[1] || '').trim(),
      x: number(f[2], 0),
      y: number(f[3], 0),
      zoom: (f[4] || '').trim(),
      hotspots: [],
    };
    for (var k = 0; k < 10; k++) {
      var at = 10 + 5 * k;
      var x1 = number(f[at], 0);
      var x2 = number(f[at + 1], 0);
      var y1 = number(f[at + 2], 0);
      var y2 = number(f[at + 3], 0);
      if (x1 === x2 || y1 === y2) continue;
      view.hotspots.push({
        x1: Math.min(x1, x2), x2: Math.max(x1, x2), y1: Math.min(y1, y2), y2: Math.max(y1, y2),
        target: Math.round(number(f[at + 4], 0)),
      });
    }
    return view;
  }

  function Panorama(box, params) {
    this.box = box;
    this.views = [];
    for (var i = 0; ('url' + i) in params; i++) this.views.push(parseView(params['url' + i]));
    this.index = -1;
    this.img = null;
    this.alternative = false;
    this.scale = 1;
    this.minScale = 1;
    this.maxScale = 4;
    this.vx = 0;
    this.vy = 0;
    this.wrap = false;
    this.hover = null;
    this.autoPan = true;
    this.pointerInside = false;
    this.direction = 1;
    this.last = null;
    this.drag = null;
    this.listen();
    if (this.views.length) this.show(0);
  }

  Panorama.prototype.show = function (index) {
    var self = this;
    var view = this.views[index];
    if (!view) return;
    var ready = function (img, alternative) {
      self.index = index;
      self.img = img;
      self.alternative = alternative;
      self.hover = null;
      self.box.canvas.setAttribute('data-picture', alternative ? view.alt : view.src);
      self.box.canvas.setAttribute('data-index', String(index));
      self.startView(view);
    };
    var useAlternative = function () {
      if (view.alt) {
        loadPicture(view.alt, function (img) {
          ready(img, true);
        });
      }
    };
    if (view.src) {
      loadPicture(view.src, function (img) {
        ready(img, false);
      }, useAlternative);
    } else {
      useAlternative();
    }
  };

  Panorama.prototype.startView = function (view) {
    var b = this.box;
    var iw = this.img.naturalWidth;
    var ih = this.img.naturalHeight;
    var contain = Math.min(b.w / iw, b.h / ih);
    var cover = Math.max(b.w / iw, b.h / ih);
    // A picture at least two and a half times as wide as high goes round.
    this.wrap = !this.alternative && iw >= 2.5 * ih;
    this.minScale = this.wrap ? b.h / ih : contain;
    this.maxScale = Math.max(cover, 1) * 4;
    var zoom = view.zoom.toLowerCase();
    var scale;
    if (this.alternative || zoom === 'min') scale = this.minScale;
    else if (zoom === 'full' || !(number(zoom, 0) > 0)) scale = cover;
    else scale = number(zoom, 100) / 100;
    this.scale = clamp(scale, this.minScale, this.maxScale);
    this.vx = this.alternative ? 0 : view.x;
    this.vy = this.alternative ? 0 : view.y;
    this.limit();
  };

  // Keeps the view on the picture; a picture smaller than the view is centred.
  Panorama.prototype.limit = function () {
    var iw = this.img.naturalWidth;
    var ih = this.img.naturalHeight;
    var vw = this.box.w / this.scale;
    var vh = this.box.h / this.scale;
    if (this.wrap) this.vx = ((this.vx % iw) + iw) % iw;
    else if (vw >= iw) this.vx = (iw - vw) / 2;
    else this.vx = clamp(this.vx, 0, iw - vw);
    if (vh >= ih) this.vy = (ih - vh) / 2;
    else this.vy = clamp(this.vy, 0, ih - vh);
  };

  // Canvas point of a picture point; for a wrapping picture the copy
  // nearest to the view.
  Panorama.prototype.pictureToCanvas = function (px, py) {
    var x = px - this.vx;
    if (this.wrap) {
      var iw = this.img.naturalWidth;
      x = ((x % iw) + iw) % iw;
      if (x * this.scale > this.box.w) x -= iw;
    }
    return { x: x * this.scale, y: (py - this.vy) * this.scale };
  };

  Panorama.prototype.canvasToPicture = function (cx, cy) {
    var x = this.vx + cx / this.scale;
    if (this.wrap) x = ((x % this.img.naturalWidth) + this.img.naturalWidth) % this.img.naturalWidth;
    return { x: x, y: this.vy + cy / this.scale };
  };

  Panorama.prototype.hotspotAt = function (cx, cy) {
    if (!this.img || this.alternative) return null;
    var p = this.canvasToPicture(cx, cy);
    var spots = this.views[this.index].hotspots;
    for (var i = 0; i < spots.length; i++) {
      var s = spots[i];
      if (p.x >= s.x1 && p.x < s.x2 && p.y >= s.y1 && p.y < s.y2 && this.views[s.target]) return s;
    }
    return null;
  };

  Panorama.prototype.zoomAt = function (factor, cx, cy) {
    if (!this.img || this.alternative) return;
    var before = this.canvasToPicture(cx, cy);
    this.scale = clamp(this.scale * factor, this.minScale, this.maxScale);
    this.vx = before.x - cx / this.scale;
    this.vy = before.y - cy / this.scale;
    this.limit();
  };

  Panorama.prototype.panBy = function (dx, dy) {
    if (!this.img || this.alternative) return;
    this.vx -= dx / this.scale;
    this.vy -= dy / this.scale;
    this.limit();
  };

  Panorama.prototype.listen = function () {
    var self = this;
    var c = this.box.canvas;
    c.tabIndex = 0;
    c.style.cursor = 'grab';
    c.style.touchAction = 'none';
    c.style.outline = 'none';
    var local = function (e) {
      var r = c.getBoundingClientRect();
      return { x: ((e.clientX - r.left) * self.box.w) / r.width, y: ((e.clientY - r.top) * self.box.h) / r.height };
    };
    c.addEventListener('pointerenter', function () {
      self.pointerInside = true;
    });
    c.addEventListener('pointerleave', function () {
      self.pointerInside = false;
      self.hover = null;
    });
    c.addEventListener('pointerdown', function (e) {
      if (e.button !== 0) return;
      self.autoPan = false;
      var p = local(e);
      self.drag = { x: p.x, y: p.y, startX: p.x, startY: p.y, moved: false };
      if (c.setPointerCapture) c.setPointerCapture(e.pointerId);
      c.style.cursor = 'grabbing';
      e.preventDefault();
      c.focus();
    });
    c.addEventListener('pointermove', function (e) {
      var p = local(e);
      if (self.drag) {
        self.panBy(p.x - self.drag.x, p.y - self.drag.y);
        self.drag.x = p.x;
        self.drag.y = p.y;
        if (Math.abs(p.x - self.drag.startX) + Math.abs(p.y - self.drag.startY) > 4) self.drag.moved = true;
        return;
      }
      self.hover = self.hotspotAt(p.x, p.y);
      c.style.cursor = self.hover ? 'pointer' : 'grab';
    });
    var end = function (e) {
      if (!self.drag) return;
      var moved = self.drag.moved;
      self.drag = null;
      var p = local(e);
      var spot = moved ? null : self.hotspotAt(p.x, p.y);
      c.style.cursor = spot ? 'pointer' : 'grab';
      if (spot) self.show(spot.target);
    };
    c.addEventListener('pointerup', end);
    c.addEventListener('pointercancel', function () {
      self.drag = null;
    });
    c.addEventListener('wheel', function (e) {
      e.preventDefault();
      self.autoPan = false;
      var p = local(e);
      var delta = e.deltaMode === 1 ? e.deltaY * 33 : e.deltaMode === 2 ? e.deltaY * self.box.h : e.deltaY;
      self.zoomAt(Math.exp(-delta * 0.0015), p.x, p.y);
    }, { passive: false });
    c.addEventListener('keydown', function (e) {
      var keys = { ArrowLeft: [40, 0], ArrowRight: [-40, 0], ArrowUp: [0, 40], ArrowDown: [0, -40] };
      if (keys[e.key]) self.panBy(keys[e.key][0], keys[e.key][1]);
      else if (e.key === '+' || e.key === '=') self.zoomAt(1.25, self.box.w / 2, self.box.h / 2);
      else if (e.key === '-') self.zoomAt(0.8, self.box.w / 2, self.box.h / 2);
      else return;
      self.autoPan = false;
      e.preventDefault();
    });
  };

  Panorama.prototype.draw = function (t) {
    var ctx = this.box.ctx;
    var b = this.box;
    var dt = this.last == null ? 0 : Math.min(100, t - this.last);
    this.last = t;
    ctx.fillStyle = '#15191e';
    ctx.fillRect(0, 0, b.w, b.h);
    if (!this.img) return;
    // Until the reader takes over, the view turns slowly by itself.
    if (this.autoPan && !this.pointerInside && !this.drag && !this.alternative) {
      var before = this.vx;
      this.vx += (this.direction * 16 * dt) / 1000 / this.scale;
      this.limit();
      if (!this.wrap && this.vx === before && dt > 0) this.direction = -this.direction;
    }
    var iw = this.img.naturalWidth;
    var w = iw * this.scale;
    var h = this.img.naturalHeight * this.scale;
    var x = -this.vx * this.scale;
    var y = -this.vy * this.scale;
    if (this.wrap) {
      for (var xx = x; xx < b.w; xx += w) ctx.drawImage(this.img, xx, y, w, h);
    } else {
      ctx.drawImage(this.img, x, y, w, h);
    }
    if (this.alternative) return;
    var spots = this.views[this.index].hotspots;
    for (var i = 0; i < spots.length; i++) {
      var s = spots[i];
      if (!this.views[s.target]) continue;
      var p = this.pictureToCanvas(s.x1, s.y1);
      var sw = (s.x2 - s.x1) * this.scale;
      var sh = (s.y2 - s.y1) * this.scale;
      var on = s === this.hover;
      ctx.save();
      ctx.lineWidth = on ? 2 : 1;
      ctx.strokeStyle = on ? 'rgba(255, 255, 255, 0.95)' : 'rgba(255, 255, 255, 0.45)';
      if (!on) ctx.setLineDash([5, 4]);
      ctx.fillStyle = on ? 'rgba(255, 255, 255, 0.16)' : 'rgba(255, 255, 255, 0.04)';
      ctx.beginPath();
      if (ctx.roundRect) ctx.roundRect(p.x, p.y, sw, sh, 6);
      else ctx.rect(p.x, p.y, sw, sh);
      ctx.fill();
      ctx.stroke();
      ctx.restore();
    }
  };

  var kinds = { bslake: Lake, bsrain: Rain, bspano: Pano, pan360: Panorama };

  function replaceApplets() {
    var applets = Array.prototype.slice.call(document.getElementsByTagName('applet'));
    for (var i = 0; i < applets.length; i++) {
      var applet = applets[i];
      var code = String(applet.getAttribute('code') || '').toLowerCase().replace(/\.class$/, '');
      var Kind = kinds[code];
      if (!Kind || !applet.parentNode) continue;
      var params = appletParams(applet);
      var box = makeCanvas(applet, code);
      var effect = new Kind(box, params);
      if (Kind !== Panorama) linkable(box, params);
      box.canvas.bseffect = effect;
      running.push(effect);
    }
    if (running.length) window.requestAnimationFrame(tick);
  }

  function tick(t) {
    for (var i = 0; i < running.length; i++) running[i].draw(t);
    window.requestAnimationFrame(tick);
  }

  if (document.readyState === 'loading') document.addEventListener('DOMContentLoaded', replaceApplets);
  else replaceApplets();
})();
