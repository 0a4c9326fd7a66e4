// Panorama viewer applet of the HTML album.
// Parameters URL0, URL1, ...: picture, alternative picture, x, y, zoom
// ("Full", "Min" or a percentage), four reserved numbers, 0, then ten
// hotspots of x1, x2, y1, y2 and the number of the picture they lead to,
// in picture pixels; x and y are the picture point at the top left corner
// of the view. Drag to pan, wheel to zoom, click a hotspot to go on; until
// the reader takes over, the view turns slowly by itself.
// Only this one class file travels with an album, so it has no helpers.

import java.applet.Applet;
import java.awt.BasicStroke;
import java.awt.Color;
import java.awt.Cursor;
import java.awt.Graphics;
import java.awt.Graphics2D;
import java.awt.Image;
import java.awt.MediaTracker;
import java.awt.RenderingHints;
import java.awt.event.MouseEvent;
import java.awt.event.MouseListener;
import java.awt.event.MouseMotionListener;
import java.awt.event.MouseWheelEvent;
import java.awt.event.MouseWheelListener;
import java.awt.image.BufferedImage;
import java.util.ArrayList;
import java.util.List;

public class pan360 extends Applet implements Runnable, MouseListener, MouseMotionListener, MouseWheelListener {
    private static final long serialVersionUID = 1L;
    private int w, h;
    private final List<String[]> views = new ArrayList<String[]>(); // picture, alternative, x, y, zoom
    private final List<int[][]> spots = new ArrayList<int[][]>(); // per view: x1, x2, y1, y2, target
    private int index = -1;
    private Image img;
    private boolean alternative, wrap, autoPan = true, inside;
    private double scale = 1, minScale = 1, maxScale = 4, vx, vy, direction = 1;
    private long last = -1;
    private int dragX, dragY, pressX, pressY;
    private boolean dragging, moved;
    private int[] hover;
    private BufferedImage buffer;
    private volatile Thread runner;
    private long started;

    static double number(String text, double fallback) {
        if (text == null) return fallback;
        try {
            return Double.parseDouble(text.trim().replace(',', '.'));
        } catch (NumberFormatException e) {
            return fallback;
        }
    }

    public void init() {
        w = Math.max(1, getSize().width);
        h = Math.max(1, getSize().height);
        for (int i = 0; getParameter("URL" + i) != null; i++) {
            views.add(view(getParameter("URL" + i)));
            spots.add(hotspots(getParameter("URL" + i)));
        }
        buffer = new BufferedImage(w, h, BufferedImage.TYPE_INT_RGB);
        setCursor(Cursor.getPredefinedCursor(Cursor.MOVE_CURSOR));
        addMouseListener(this);
        addMouseMotionListener(this);
        addMouseWheelListener(this);
        if (!views.isEmpty()) show(0);
        started = System.currentTimeMillis();
    }

    /** Picture, alternative, x, y and zoom of a URLn value. */
    public static String[] view(String value) {
        String[] f = value.split(",", -1);
        String[] view = new String[5];
        for (int k = 0; k < 5; k++) view[k] = k < f.length ? f[k].trim() : "";
        return view;
    }

    /** The hotspots of a URLn value: x1, x2, y1, y2 and target of each. */
    public static int[][] hotspots(String value) {
        String[] f = value.split(",", -1);
        List<int[]> list = new ArrayList<int[]>();
        for (int k = 0; k < 10; k++) {
            int at = 10 + 5 * k;
            if (at + 4 >= f.length) break;
            int x1 = (int) number(f[at], 0), x2 = (int) number(f[at + 1], 0);
            int y1 = (int) number(f[at + 2], 0), y2 = (int) number(f[at + 3], 0);
            if (x1 == x2 || y1 == y2) continue;
            list.add(new int[] {Math.min(x1, x2), Math.max(x1, x2), Math.min(y1, y2), Math.max(y1, y2),
                (int) Math.round(number(f[at + 4], 0))});
        }
        return list.toArray(new int[0][]);
    }

    /**
     * The zoom a picture of iw x ih starts with in a w x h view: "Full"
     * fills the view, "Min" shows it whole (a picture that goes round:
     * its full height), a number is a percentage; between the smallest
     * zoom and four times the full one.
     */
    public static double startScale(String zoom, int iw, int ih, int w, int h) {
        double contain = Math.min(w / (double) iw, h / (double) ih);
        double cover = Math.max(w / (double) iw, h / (double) ih);
        double min = iw >= 2.5 * ih ? h / (double) ih : contain;
        double max = Math.max(cover, 1) * 4;
        String z = zoom.trim().toLowerCase();
        double s;
        if (z.equals("min")) s = min;
        else if (z.equals("full") || !(number(z, 0) > 0)) s = cover;
        else s = number(z, 100) / 100;
        return Math.max(min, Math.min(max, s));
    }

    private Image load(String name) {
        if (name == null || name.length() == 0) return null;
        try {
            Image picture = getImage(getDocumentBase(), name);
            MediaTracker tracker = new MediaTracker(this);
            tracker.addImage(picture, 0);
            tracker.waitForID(0);
            return tracker.isErrorID(0) || picture.getWidth(null) <= 0 ? null : picture;
        } catch (InterruptedException e) {
            return null;
        }
    }

    /** Shows picture number i of the set with its start view. */
    public void show(int i) {
        if (i < 0 || i >= views.size()) return;
        String[] view = views.get(i);
        Image picture = load(view[0]);
        boolean alt = false;
        if (picture == null) {
            picture = load(view[1]);
            alt = true;
        }
        if (picture == null) return;
        index = i;
        img = picture;
        alternative = alt;
        hover = null;
        int iw = img.getWidth(null), ih = img.getHeight(null);
        // A picture at least two and a half times as wide as high goes round.
        wrap = !alternative && iw >= 2.5 * ih;
        minScale = wrap ? h / (double) ih : Math.min(w / (double) iw, h / (double) ih);
        maxScale = Math.max(Math.max(w / (double) iw, h / (double) ih), 1) * 4;
        scale = alternative ? minScale : startScale(view[4], iw, ih, w, h);
        vx = alternative ? 0 : number(view[2], 0);
        vy = alternative ? 0 : number(view[3], 0);
        limit();
        repaint();
    }

    public int pictureIndex() {
        return index;
    }

    private void limit() {
        int iw = img.getWidth(null), ih = img.getHeight(null);
        double vw = w / scale, vh = h / scale;
        if (wrap) vx = ((vx % iw) + iw) % iw;
        else if (vw >= iw) vx = (iw - vw) / 2;
        else vx = Math.max(0, Math.min(iw - vw, vx));
        if (vh >= ih) vy = (ih - vh) / 2;
        else vy = Math.max(0, Math.min(ih - vh, vy));
    }

    private int[] hotspotAt(int cx, int cy) {
        if (img == null || alternative) return null;
        int iw = img.getWidth(null);
        double px = vx + cx / scale, py = vy + cy / scale;
        if (wrap) px = ((px % iw) + iw) % iw;
        for (int[] s : spots.get(index)) {
            if (px >= s[0] && px < s[1] && py >= s[2] && py < s[3] && s[4] >= 0 && s[4] < views.size()) return s;
        }
        return null;
    }

    /** Draws the view at a time in milliseconds since the start. */
    public void render(Graphics out, long millis) {
        Graphics2D g = (Graphics2D) buffer.getGraphics();
        g.setRenderingHint(RenderingHints.KEY_INTERPOLATION, RenderingHints.VALUE_INTERPOLATION_BILINEAR);
        g.setColor(new Color(0x15191e));
        g.fillRect(0, 0, w, h);
        double dt = last < 0 ? 0 : Math.min(100, millis - last);
        last = millis;
        if (img != null) {
            if (autoPan && !inside && !dragging && !alternative) {
                double before = vx;
                vx += direction * 16 * dt / 1000 / scale;
                limit();
                if (!wrap && vx == before && dt > 0) direction = -direction;
            }
            int iw = img.getWidth(null);
            double pw = iw * scale, ph = img.getHeight(null) * scale;
            double x = -vx * scale, y = -vy * scale;
            if (wrap) {
                for (double xx = x; xx < w; xx += pw) {
                    g.drawImage(img, (int) Math.round(xx), (int) Math.round(y), (int) Math.ceil(pw), (int) Math.ceil(ph), null);
                }
            } else {
                g.drawImage(img, (int) Math.round(x), (int) Math.round(y), (int) Math.ceil(pw), (int) Math.ceil(ph), null);
            }
            if (!alternative) {
                for (int[] s : spots.get(index)) {
                    if (s[4] < 0 || s[4] >= views.size()) continue;
                    double sx = s[0] - vx;
                    if (wrap) {
                        sx = ((sx % iw) + iw) % iw;
                        if (sx * scale > w) sx -= iw;
                    }
                    boolean on = s == hover;
                    g.setColor(on ? new Color(255, 255, 255, 240) : new Color(255, 255, 255, 115));
                    g.setStroke(on ? new BasicStroke(2) : new BasicStroke(1, BasicStroke.CAP_BUTT,
                            BasicStroke.JOIN_MITER, 10, new float[] {5, 4}, 0));
                    g.drawRoundRect((int) Math.round(sx * scale), (int) Math.round((s[2] - vy) * scale),
                            (int) Math.round((s[1] - s[0]) * scale), (int) Math.round((s[3] - s[2]) * scale), 12, 12);
                }
            }
        }
        g.dispose();
        out.drawImage(buffer, 0, 0, null);
    }

    public void start() {
        runner = new Thread(this);
        runner.start();
    }

    public void stop() {
        runner = null;
    }

    public void run() {
        Thread me = Thread.currentThread();
        while (runner == me) {
            repaint();
            try {
                Thread.sleep(30);
            } catch (InterruptedException e) {
                return;
            }
        }
    }

    public void update(Graphics g) {
        paint(g);
    }

    public void paint(Graphics g) {
        if (buffer != null) render(g, System.currentTimeMillis() - started);
    }

    public void mousePressed(MouseEvent e) {
        autoPan = false;
        dragging = true;
        moved = false;
        dragX = pressX = e.getX();
        dragY = pressY = e.getY();
    }

    public void mouseDragged(MouseEvent e) {
        if (!dragging || img == null || alternative) return;
        vx -= (e.getX() - dragX) / scale;
        vy -= (e.getY() - dragY) / scale;
        dragX = e.getX();
        dragY = e.getY();
        if (Math.abs(dragX - pressX) + Math.abs(dragY - pressY) > 4) moved = true;
        limit();
        repaint();
    }

    public void mouseReleased(MouseEvent e) {
        dragging = false;
        int[] spot = moved ? null : hotspotAt(e.getX(), e.getY());
        if (spot != null) show(spot[4]);
    }

    public void mouseMoved(MouseEvent e) {
        hover = hotspotAt(e.getX(), e.getY());
        setCursor(Cursor.getPredefinedCursor(hover != null ? Cursor.HAND_CURSOR : Cursor.MOVE_CURSOR));
    }

    public void mouseWheelMoved(MouseWheelEvent e) {
        if (img == null || alternative) return;
        autoPan = false;
        int iw = img.getWidth(null);
        double px = vx + e.getX() / scale, py = vy + e.getY() / scale;
        scale = Math.max(minScale, Math.min(maxScale, scale * Math.exp(-e.getPreciseWheelRotation() * 0.15)));
        vx = px - e.getX() / scale;
        vy = py - e.getY() / scale;
        if (wrap) vx = ((vx % iw) + iw) % iw;
        limit();
        repaint();
    }

    public void mouseClicked(MouseEvent e) {}

    public void mouseEntered(MouseEvent e) {
        inside = true;
    }

    public void mouseExited(MouseEvent e) {
        inside = false;
        hover = null;
    }
}
