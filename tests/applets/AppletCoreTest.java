// Checks the drawing and parameter rules of the album's applets without a
// display: each applet keeps them in static methods of its one class.

import java.awt.Color;
import java.awt.Graphics;
import java.awt.image.BufferedImage;

public class AppletCoreTest {
    private static int failures = 0;

    private static void check(boolean ok, String what) {
        if (!ok) {
            failures++;
            System.out.println("FAILED: " + what);
        } else {
            System.out.println("ok: " + what);
        }
    }

    private static void lake() {
        int w = 60, h = 40, frame = 3;
        int[] picture = new int[w * h];
        for (int y = 0; y < h; y++)
            for (int x = 0; x < w; x++) picture[y * w + x] = x < frame || y < frame || x >= w - frame || y >= h - frame
                    ? 0xff0000 : (y * 6) << 8 | x * 4;
        int[] a = new int[w * h], b = new int[w * h];
        bslake.reflect(picture, a, w, h, frame, 3, 0);
        bslake.reflect(picture, b, w, h, frame, 3, 700);
        int line = frame + (h - 2 * frame) / 2;
        boolean upperKept = true, frameKept = true, changed = false;
        for (int y = 0; y < h; y++) {
            for (int x = 0; x < w; x++) {
                int i = y * w + x;
                boolean onFrame = x < frame || y < frame || x >= w - frame || y >= h - frame;
                if (onFrame && (a[i] & 0xffffff) != 0xff0000) frameKept = false;
                if (!onFrame && y < line && a[i] != picture[i]) upperKept = false;
                if (a[i] != b[i]) changed = changed || y >= line;
            }
        }
        check(upperKept, "lake: the picture above the water line stays");
        check(frameKept, "lake: the frame stays");
        check(changed, "lake: the waves move");
        // Just below the line the water mirrors the rows just above it.
        int green = (a[line * w + w / 2] >> 8) & 255;
        check(green > 0 && green < ((picture[(line - 1) * w + w / 2] >> 8) & 255) + 1,
                "lake: the first water row is a darker copy of the last picture row");
    }

    private static BufferedImage weather(boolean snow, long millis) {
        int w = 80, h = 60, frame = 5;
        BufferedImage img = new BufferedImage(w, h, BufferedImage.TYPE_INT_RGB);
        Graphics g = img.getGraphics();
        g.setColor(new Color(0x202020));
        g.fillRect(0, 0, w, h);
        bsrain.drawWeather(g, bsrain.drops(bsrain.count("300", snow, 70, 50), snow, 4), snow, w, h, frame, millis);
        g.dispose();
        return img;
    }

    private static void rain() {
        for (boolean snow : new boolean[] {false, true}) {
            String kind = snow ? "snow" : "rain";
            BufferedImage a = weather(snow, 0), b = weather(snow, 400);
            boolean frameKept = true, light = false, changed = false;
            for (int y = 0; y < 60; y++) {
                for (int x = 0; x < 80; x++) {
                    boolean onFrame = x < 5 || y < 5 || x >= 75 || y >= 55;
                    if (onFrame && (a.getRGB(x, y) & 0xffffff) != 0x202020) frameKept = false;
                    if ((a.getRGB(x, y) & 0xff) > 0x80) light = true;
                    if (a.getRGB(x, y) != b.getRGB(x, y)) changed = true;
                }
            }
            check(frameKept, kind + ": nothing falls on the frame");
            check(light, kind + ": drops are drawn");
            check(changed, kind + ": drops fall");
        }
        check(bsrain.count("273", false, 100, 100) == 273, "rain: anzahl is the number of drops");
        check(bsrain.count("0", false, 100, 100) == 40, "rain: without anzahl one drop per 250 pixels");
        check(bsrain.count("0", true, 100, 100) == 25, "snow: without anzahl one flake per 400 pixels");
        check(bsrain.count("99999", true, 100, 100) == 5000, "snow: at most 5000 flakes");
    }

    private static void pano() {
        check(bspano.velocity("5", "2") == 40, "pano: 2 pixels each 50 ms are 40 pixels a second");
        check(bspano.velocity("5", "-2") == -40, "pano: a negative step turns the direction");
        check(bspano.offset(40, 300, 1000) == 40, "pano: the strip moves with time");
        check(bspano.offset(40, 300, 8000) == 20, "pano: the strip starts again at its end");
        check(bspano.offset(-40, 300, 1000) == 260, "pano: and backwards");
    }

    private static void panorama() {
        StringBuilder value = new StringBuilder("rundblick.jpg,alt.gif,120,-30, 150,0,0,0,0,0,");
        value.append("1000,1200,60,240,1,").append("0,0,0,0,0,".repeat(8)).append("300,100,10,50,2,0,0,0,0,0");
        String[] view = pan360.view(value.toString());
        check(view[0].equals("rundblick.jpg") && view[1].equals("alt.gif") && view[2].equals("120")
                && view[3].equals("-30") && view[4].equals("150"), "panorama: picture, alternative, x, y, zoom");
        int[][] spots = pan360.hotspots(value.toString());
        check(spots.length == 2, "panorama: empty hotspots are skipped");
        check(java.util.Arrays.equals(spots[0], new int[] {1000, 1200, 60, 240, 1}), "panorama: first hotspot");
        check(java.util.Arrays.equals(spots[1], new int[] {100, 300, 10, 50, 2}), "panorama: corners in any order");
        check(pan360.startScale("Full", 1600, 400, 560, 260) == 260 / 400.0, "panorama: Full fills the view");
        check(pan360.startScale("Min", 1200, 800, 560, 260) == 260 / 800.0, "panorama: Min shows the whole picture");
        check(pan360.startScale("Min", 1600, 400, 560, 260) == 260 / 400.0,
                "panorama: a picture that goes round keeps the full height");
        check(pan360.startScale(" 100", 1200, 800, 560, 260) == 1, "panorama: a number is a percentage");
        check(pan360.startScale(" 0", 1200, 800, 560, 260) == 560 / 1200.0, "panorama: no number fills the view");
        check(pan360.startScale(" 9000", 1200, 800, 560, 260) == 4, "panorama: at most four times");
    }

    public static void main(String[] args) {
        lake();
        rain();
        pano();
        panorama();
        if (failures > 0) {
            System.out.println(failures + " checks failed");
            System.exit(1);
        }
    }
}
