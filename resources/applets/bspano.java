// Panorama strip applet of the HTML album: the picture, scaled to the
// height of the box, scrolls sideways without end.
// Parameters: speed (pause between steps, in 10 ms), rahmenbreite (frame
// width), anzahl (step in pixels; below 0 scrolls the other way), URL,
// target, picture.
// Only this one class file travels with an album, so it has no helpers.

import java.applet.Applet;
import java.awt.Color;
import java.awt.Cursor;
import java.awt.Graphics;
import java.awt.Image;
import java.awt.MediaTracker;
import java.awt.event.MouseEvent;
import java.awt.event.MouseListener;
import java.awt.image.BufferedImage;
import java.net.URL;

public class bspano extends Applet implements Runnable, MouseListener {
    private static final long serialVersionUID = 1L;
    private int w, h, frame;
    private double velocity; // pixels per second
    private Image picture;
    private BufferedImage background, buffer;
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
        frame = (int) Math.max(0, Math.min(number(getParameter("rahmenbreite"), 0), Math.min(w, h) / 2 - 1));
        velocity = velocity(getParameter("speed"), getParameter("anzahl"));
        link = getParameter("URL");
        target = getParameter("target");
        background = new BufferedImage(w, h, BufferedImage.TYPE_INT_RGB);
        Graphics bg = background.getGraphics();
        bg.setColor(new Color(0x3d6680));
        bg.fillRect(0, 0, w, h);
        String name = getParameter("picture");
        if (name != null) {
            try {
                Image img = getImage(getDocumentBase(), name);
                MediaTracker tracker = new MediaTracker(this);
                tracker.addImage(img, 0);
                tracker.waitForID(0);
                if (!tracker.isErrorID(0)) {
                    picture = img;
                    bg.drawImage(img, 0, 0, w, h, null); // the frame, as the file holds it
                }
            } catch (InterruptedException e) {
                // Shown without its picture.
            }
        }
        bg.dispose();
        buffer = new BufferedImage(w, h, BufferedImage.TYPE_INT_RGB);
        if (link != null && link.length() > 0) {
            setCursor(Cursor.getPredefinedCursor(Cursor.HAND_CURSOR));
            addMouseListener(this);
        }
        started = System.currentTimeMillis();
    }

    /** Pixels per second: a step of anzahl pixels after a pause of speed x 10 ms. */
    public static double velocity(String speed, String anzahl) {
        double pause = Math.max(1, number(speed, 5)) * 10;
        double step = number(anzahl, 1);
        return (step == 0 ? 1 : step) / pause * 1000;
    }

    /** How far the strip of the given width has moved at a time, 0 to width. */
    public static double offset(double velocity, double width, long millis) {
        return ((velocity * millis / 1000.0) % width + width) % width;
    }

    /** Draws the frame at a time in milliseconds since the start. */
    public void render(Graphics out, long millis) {
        Graphics g = buffer.getGraphics();
        g.drawImage(background, 0, 0, null);
        if (picture != null) {
            int innerW = w - 2 * frame, innerH = h - 2 * frame;
            int pw = picture.getWidth(null), ph = picture.getHeight(null);
            double sw = Math.max(1, pw * (double) innerH / Math.max(1, ph));
            double offset = offset(velocity, sw, millis);
            g.clipRect(frame, frame, innerW, innerH);
            for (double x = frame - offset; x < frame + innerW; x += sw) {
                g.drawImage(picture, (int) Math.round(x), frame, (int) Math.ceil(sw), innerH, null);
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
