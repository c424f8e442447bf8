package com.fernwick.android.ad.mero.bench;

import com.fernwick.android.ad.mero.MRComponent;
import com.fernwick.android.ad.mero.components.GradientInfo;
import com.fernwick.android.ad.mero.components.swiper.MRSwiperComponent;
import com.fernwick.android.ad.mero.nativ_.MeroNative;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Times the natives from Java: a card from loadTemplate to the returned root
 * view, and one click to the end of its flush. Beside each it prints the same
 * work without JNI, read from mero_bench's JSON output (BM_Instance*), and the
 * share JNI adds. Run with `cmake --build <build> --target jvm_bench`.
 */
public final class JniBench {
    private static final String[] CARDS = {"app_install", "carousel", "bridge_card"};

    private JniBench() {}

    /** A host whose views and services do as little as a host can. */
    static final class QuietHost extends MeroNative {
        final Map<String, MRComponent> views = new HashMap<>();
        final float[] textSize = {120f, 30f};

        @Override public MRComponent createComponent(
                int type, int[] ints, float[] floats, String[] strings, boolean[] booleans, GradientInfo gradient) {
            views.put(strings[0], new QuietView());
            return views.get(strings[0]);
        }

        @Override public void addRootView(MRComponent root) {}
        @Override public void removeRootView() {}
        @Override public MRComponent findComponentById(String componentId) { return views.get(componentId); }
        @Override public void updateComponentProperty(String componentId, int propertyId, Object value) {}
        @Override public void playComponentAnimation(
                String componentId, int propertyId, Object value, int timing, int duration, int delay) {}
        @Override public float[] measureText(String text, float fontSize, int style, int maxLines,
                float lineHeight, float textInterval, float width, int widthMode, float height, int heightMode) {
            return textSize;
        }
        @Override public void setTimeout(long delay, int jobId) {}
        @Override public void startVideoTimerTask(long second, int first, int[] times, int[] ids) {}
        @Override public void sendALog(String message) {}
        @Override public void callJSB(String method, String paramsJson, long callbackId) {}
        @Override public void callJSBWithKeyPath(
                String method, String paramsJson, String keyPathJson, long callbackId) {}
    }

    /** Every view is a swiper, so one class serves all kinds. */
    static final class QuietView extends MRSwiperComponent {
        @Override public void addChild(MRComponent child) {}
        @Override public void addChildAt(int index, MRComponent child) {}
        @Override public void removeChildAt(int index) {}
        @Override public float[] getContentSize() { return new float[] {200f, 50f}; }
        @Override public void start() {}
    }

    public static void main(String[] args) throws IOException {
        System.load(System.getProperty("mero.library"));
        Path data = Path.of(System.getProperty("mero.benchData"));
        Map<String, Double> withoutJni = readNativeResults(System.getProperty("mero.nativeResults"));
        String feed = Files.readString(data.resolve("feed_data.json"));
        QuietHost host = new QuietHost();
        System.out.printf("%-34s %12s %12s %10s%n", "work", "JNI (us)", "no JNI (us)", "JNI share");
        for (String card : CARDS) {
            // The two feed templates read the feed's data; the bridge card reads none.
            boolean feedCard = !card.equals("bridge_card");
            String template = Files.readString(data.resolve(card + (feedCard ? "_template.json" : ".json")));
            startCards(host, template, feedCard ? feed : "{}", 300);
            print("loadTemplate to root: " + card, startCards(host, template, feedCard ? feed : "{}", 2000),
                    withoutJni.get("BM_InstanceStart_NoJni/" + card + "/manual_time"));
        }
        double click = clicks(host, Files.readString(data.resolve("bridge_card.json")));
        print("click to end of flush", click, withoutJni.get("BM_InstanceClick_NoJni"));

        // Feed cards written by mero_bench: an event that changes a title of fixed size.
        Path cards = Path.of(System.getProperty("mero.benchCards"));
        for (int nodes : new int[] {21, 101, 501}) {
            String template = Files.readString(cards.resolve("card-" + nodes + ".json"));
            print("text update, " + nodes + " nodes", textUpdates(host, template),
                    withoutJni.get("BM_InstanceTextUpdate_NoJni/" + nodes));
        }
        residentPerNode(host, Files.readString(cards.resolve("card-501.json")), 200, 501);
    }

    /** Mean microseconds of one event that sets the title, after 20,000 to warm up. */
    private static double textUpdates(QuietHost host, String template) {
        show(host, 9, template, "{}");
        long start = 0;
        for (int i = -20_000; i < 100_000; i++) {
            start = i == 0 ? System.nanoTime() : start;
            host.sendEvent(9, i % 2 == 0 ? "short" : "long", "{}");
        }
        double micros = (System.nanoTime() - start) / 1000.0 / 100_000;
        host.releaseInstance(9);
        return micros;
    }

    /** The process's resident memory grown by `count` live cards, per render node. */
    private static void residentPerNode(QuietHost host, String template, int count, int nodes) throws IOException {
        System.gc();
        long before = residentKilobytes();
        for (int handle = 100; handle < 100 + count; handle++) {
            show(host, handle, template, "{}");
        }
        System.gc();
        long after = residentKilobytes();
        for (int handle = 100; handle < 100 + count; handle++) {
            host.releaseInstance(handle);
        }
        System.out.printf("%d live cards of %d nodes: resident memory +%d KB, %.2f KB per render node%n", count, nodes,
                after - before, (after - before) / (double) (count * nodes));
    }

    private static long residentKilobytes() throws IOException {
        for (String line : Files.readAllLines(Path.of("/proc/self/status"))) {
            if (line.startsWith("VmRSS:")) {
                return Long.parseLong(line.replaceAll("[^0-9]", ""));
            }
        }
        return 0;
    }

    private static void print(String work, double jni, Double withoutJni) {
        if (withoutJni == null) {
            System.out.printf("%-34s %12.2f %12s %10s%n", work, jni, "-", "-");
            return;
        }
        System.out.printf("%-34s %12.2f %12.2f %9.0f%%%n", work, jni, withoutJni, 100.0 * (jni - withoutJni) / jni);
    }

    /** Nanoseconds from loadTemplate to the returned root view, for a card 1080 wide. */
    private static long show(QuietHost host, int handle, String template, String data) {
        host.views.clear();
        host.initMREngine(handle, false, false);
        host.setScreenWidth(handle, 1080f);
        long start = System.nanoTime();
        host.loadTemplate(handle, template);
        host.setData(handle, data, "{}");
        host.initContainerSize(handle, 1080f, 0f, 1, 0);
        host.initNode(handle);
        host.triggerInitEvent(handle);
        host.applyLayout(handle);
        if (host.createComponentTree(handle) == null) {
            throw new IllegalStateException("no root view");
        }
        return System.nanoTime() - start;
    }

    /** Mean microseconds from loadTemplate to the returned root view. */
    private static double startCards(QuietHost host, String template, String data, int count) {
        long total = 0;
        for (int i = 0; i < count; i++) {
            total += show(host, 7, template, data);
            host.releaseInstance(7);
        }
        return total / 1000.0 / count;
    }

    /** Mean microseconds of one click after 20,000 to warm up, alternating two targets so each changes the title. */
    private static double clicks(QuietHost host, String template) {
        show(host, 8, template, "{}");
        long start = 0;
        for (int i = -20_000; i < 100_000; i++) {
            start = i == 0 ? System.nanoTime() : start;
            host.sendClickEvent(8, i % 2 == 0 ? "title" : "icon");
        }
        double micros = (System.nanoTime() - start) / 1000.0 / 100_000;
        host.releaseInstance(8);
        return micros;
    }

    /** name -> real_time (microseconds) from Google Benchmark's JSON output. */
    private static Map<String, Double> readNativeResults(String file) throws IOException {
        Map<String, Double> times = new HashMap<>();
        if (file == null || !Files.exists(Path.of(file))) {
            return times;
        }
        Matcher entry = Pattern.compile("\"name\": \"([^\"]+)\",.*?\"real_time\": ([0-9.eE+-]+)", Pattern.DOTALL)
                .matcher(Files.readString(Path.of(file)));
        while (entry.find()) {
            times.put(entry.group(1), Double.parseDouble(entry.group(2)));
        }
        return times;
    }
}
