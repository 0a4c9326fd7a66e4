// Rain and snow applet of the HTML album: drops or flakes fall over the
// picture, inside its frame.
// Parameters: speed, snowmodus ("1" for snow), rahmenbreite (frame width),
// anzahl (number of drops), URL, target, picture.
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

public class bsrain extends Applet implements Runnable, MouseListener {
    private static final long serialVersionUID = 1L;
    private int w, h, frame;
    private boolean snow;
    private double speed;
    private float[][] drops; // x, y, size, speed, sway of each drop
    private BufferedImage picture, buffer;
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
        snow = "1".equals(String.valueOf(getParameter("snowmodus")).trim());
        frame = (int) Math.max(0, Math.min(number(getParameter("rahmenbreite"), 0), Math.min(w, h) / 2 - 1));
        link = getParameter("URL");
        target = getParameter("target");
        int innerW = w - 2 * frame, innerH = h - 2 * frame;
        int count = count(getParameter("anzahl"), snow, innerW, innerH);
        drops = drops(count, snow, speed);
        picture = new BufferedImage(w, h, BufferedImage.TYPE_INT_RGB);
        Graphics pg = picture.getGraphics();
        pg.setColor(new Color(0x3d6680));
        pg.fillRect(0, 0, w, h);
        String name = getParameter("picture");
        if (name != null) {
            try {
                Image img = getImage(getDocumentBase(), name);
                MediaTracker tracker = new MediaTracker(this);
                tracker.addImage(img, 0);
                tracker.waitForID(0);
                if (!tracker.isErrorID(0)) pg.drawImage(img, 0, 0, w, h, null);
            } catch (InterruptedException e) {
                // Shown without its picture.
            }
        }
        pg.dispose();
        buffer = new BufferedImage(w, h, BufferedImage.TYPE_INT_RGB);
        if (link != null && link.length() > 0) {
            setCursor(Cursor.getPredefinedCursor(Cursor.HAND_CURSOR));
            addMouseListener(this);
        }
        started = System.currentTimeMillis();
    }

    /** Draws the frame at a time in milliseconds since the start. */
    public void render(Graphics out, long millis) {
        Graphics g = buffer.getGraphics();
        g.drawImage(picture, 0, 0, null);
        drawWeather(g, drops, snow, w, h, frame, millis);
        g.dispose();
        out.drawImage(buffer, 0, 0, null);
    }

    /** The number of drops: anzahl, or one for a patch of the inside. */
    public static int count(String anzahl, boolean snow, int innerW, int innerH) {
        int count = (int) Math.round(number(anzahl, 0));
        if (count <= 0) count = innerW * innerH / (snow ? 400 : 250);
        return Math.max(1, Math.min(5000, count));
    }

    /** Drops with a fixed seed: the same page shows the same weather. */
    public static float[][] drops(int count, boolean snow, double speed) {
        float[][] d = new float[5][count];
        java.util.Random random = new java.util.Random(12345);
        for (int i = 0; i < count; i++) {
            d[0][i] = random.nextFloat();
            d[1][i] = random.nextFloat();
            d[2][i] = random.nextFloat();
            d[3][i] = (float) (snow ? (14 + 9 * speed) * (0.45 + 0.8 * d[2][i])
                    : (170 + 55 * speed) * (0.75 + 0.5 * d[2][i]));
            d[4][i] = (float) (random.nextFloat() * Math.PI * 2);
        }
        return d;
    }

    /** Draws the drops at a time inside the frame of a w x h box. */
    public static void drawWeather(Graphics g, float[][] d, boolean snow, int w, int h, int frame, long millis) {
        int innerW = w - 2 * frame, innerH = h - 2 * frame;
        Graphics c = g.create();
        c.clipRect(frame, frame, innerW, innerH);
        double s = millis / 1000.0;
        float[] x = d[0], y = d[1], size = d[2], v = d[3], sway = d[4];
        if (snow) {
            c.setColor(Color.white);
            for (int i = 0; i < x.length; i++) {
                double r = 0.6 + 1.5 * size[i];
                double span = innerH + 2 * r;
                double fy = frame - r + ((y[i] * span + v[i] * s) % span);
                double fx = frame + (((x[i] * innerW + Math.sin(s * 0.9 + sway[i]) * 6 * (0.5 + size[i])) % innerW)
                        + innerW) % innerW;
                int dia = (int) Math.max(1, Math.round(2 * r));
                c.fillOval((int) Math.round(fx - r), (int) Math.round(fy - r), dia, dia);
            }
        } else {
            c.setColor(new Color(214, 228, 255));
            for (int i = 0; i < x.length; i++) {
                double len = 7 + 9 * size[i];
                double fall = innerH + len;
                double fy = frame - len + ((y[i] * fall + v[i] * s) % fall);
                double fx = frame + ((x[i] * innerW + 0.16 * (fy - frame)) % innerW);
                c.drawLine((int) fx, (int) fy, (int) (fx + 0.16 * len), (int) (fy + len));
            }
        }
        c.dispose();
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
