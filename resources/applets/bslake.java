// Water reflection applet of the HTML album: the upper half of the picture
// is mirrored into the lower half in moving waves.
// Parameters: speed, rahmenbreite (frame width), URL, target, picture.
// Only this one class file travels with an album, so it has no helpers.

import java.applet.Applet;
import java.awt.Cursor;
import java.awt.Graphics;
import java.awt.Image;
import java.awt.MediaTracker;
import java.awt.event.MouseEvent;
import java.awt.event.MouseListener;
import java.awt.image.BufferedImage;
import java.awt.image.DataBufferInt;
import java.awt.image.PixelGrabber;
import java.net.URL;

public class bslake extends Applet implements Runnable, MouseListener {
    private static final long serialVersionUID = 1L;
    private int w, h, frame;
    private double speed;
    private int[] picture; // the picture at the size of the box
    private BufferedImage shown;
    private int[] pixels; // of shown
    private volatile Thread runner;
    private long started;
    private String link, target;

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
        speed = Math.max(0, number(getParameter("speed"), 3));
        frame = (int) Math.max(0, Math.min(number(getParameter("rahmenbreite"), 0), Math.min(w, h) / 2 - 1));
        link = getParameter("URL");
        target = getParameter("target");
        picture = new int[w * h];
        String name = getParameter("picture");
        if (name != null) {
            try {
                Image img = getImage(getDocumentBase(), name);
                MediaTracker tracker = new MediaTracker(this);
                tracker.addImage(img, 0, w, h);
                tracker.waitForID(0);
                if (!tracker.isErrorID(0)) {
                    new PixelGrabber(img.getScaledInstance(w, h, Image.SCALE_SMOOTH), 0, 0, w, h, picture, 0, w)
                            .grabPixels();
                }
            } catch (Exception e) {
                // An unreadable picture leaves the water dark.
            }
        }
        shown = new BufferedImage(w, h, BufferedImage.TYPE_INT_RGB);
        pixels = ((DataBufferInt) shown.getRaster().getDataBuffer()).getData();
        if (link != null && link.length() > 0) {
            setCursor(Cursor.getPredefinedCursor(Cursor.HAND_CURSOR));
            addMouseListener(this);
        }
        started = System.currentTimeMillis();
    }

    /** Draws the frame at a time in milliseconds since the start. */
    public void render(Graphics g, long millis) {
        step(millis);
        g.drawImage(shown, 0, 0, null);
    }

    private void step(long millis) {
        reflect(picture, pixels, w, h, frame, speed, millis);
    }

    /**
     * Writes into out the picture (w x h, 0xRRGGBB) with the upper half of
     * its inside (within a frame of the given width) mirrored below its
     * middle line in waves at the time in milliseconds.
     */
    public static void reflect(int[] picture, int[] out, int w, int h, int frame, double speed, long millis) {
        System.arraycopy(picture, 0, out, 0, out.length);
        int innerW = w - 2 * frame;
        int innerH = h - 2 * frame;
        int line = frame + innerH / 2;
        int depth = frame + innerH - line;
        double phase = millis / 1000.0 * (1 + speed) * 0.9;
        for (int d = 0; d < depth; d++) {
            double k = d / (double) depth;
            double wobble = Math.sin(d * 0.42 * (1 - 0.5 * k) - phase * 1.3) * (1 + 2.5 * k);
            int srcRow = (int) Math.round(line - 1 - d + wobble);
            srcRow = Math.max(frame, Math.min(line - 1, srcRow));
            int shift = (int) Math.round(Math.sin(d * 0.21 + phase) * 3 * (0.3 + k));
            // Darker and bluer with depth.
            double keep = 0.84 - 0.34 * k;
            double glint = Math.pow(Math.max(0, Math.sin(d * 0.55 - phase * 1.7)), 12) * 0.09 * (1 - k);
            int row = (line + d) * w;
            for (int x = 0; x < innerW; x++) {
                int sx = frame + Math.max(0, Math.min(innerW - 1, x - shift));
                int p = picture[srcRow * w + sx];
                int r = (p >> 16) & 255, g = (p >> 8) & 255, b = p & 255;
                r = (int) (r * keep + 14 * (1 - keep) + 255 * glint);
                g = (int) (g * keep + 46 * (1 - keep) + 255 * glint);
                b = (int) (b * keep + 72 * (1 - keep) + 255 * glint);
                out[row + frame + x] = 0xff000000 | (Math.min(255, r) << 16) | (Math.min(255, g) << 8)
                        | Math.min(255, b);
            }
        }
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
                Thread.sleep(40);
            } catch (InterruptedException e) {
                return;
            }
        }
    }

    public void update(Graphics g) {
        paint(g);
    }

    public void paint(Graphics g) {
        if (shown != null) render(g, System.currentTimeMillis() - started);
    }

    public void mouseClicked(MouseEvent e) {
        try {
            getAppletContext().showDocument(new URL(getDocumentBase(), link),
                    target == null || target.length() == 0 ? "_self" : target);
        } catch (Exception ex) {
            showStatus(link);
        }
    }

    public void mousePressed(MouseEvent e) {}

    public void mouseReleased(MouseEvent e) {}

    public void mouseEntered(MouseEvent e) {
        showStatus(link);
    }

    public void mouseExited(MouseEvent e) {
        showStatus("");
    }
}
