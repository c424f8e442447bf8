package com.fernwick.android.ad.mero.preview;

import com.fernwick.android.ad.mero.MRComponent;
import com.fernwick.android.ad.mero.components.GradientInfo;
import com.fernwick.android.ad.mero.nativ_.MeroNative;

import java.awt.image.BufferedImage;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.IdentityHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.function.Consumer;
import javax.imageio.ImageIO;

/**
 * The desktop reference host: one card's MeroNative with every host method
 * implemented, over a tree of ViewNodes instead of Android views. App
 * developers can read it method by method as the host side of the contract;
 * the previewer drives it through the natives and renders its tree.
 *
 * <p>Services: text is measured with the same TextBlock that draws it; timers,
 * video positions and late bridge replies run on a VirtualClock; the bridge is
 * answered from a BridgeFixture; script logs go to standard output.
 */
public class PreviewHost extends MeroNative {
    /** One playComponentAnimation call: the host jumps to the end value at once and keeps this record. */
    public record Animation(String id, int propertyId, Object to, int timing, int duration, int delay) {}

    private final int handle;
    private final VirtualClock clock;
    private final BridgeFixture bridge;
    private final Path templateFolder;
    /** The component made for each node; an Android host would keep its View in the view's tag instead. */
    private final Map<ViewNode, MRComponent> components = new IdentityHashMap<>();
    private final List<Animation> animations = new ArrayList<>();
    /** Images whose file loaded since the last markLoadedImagesDirty, by node id. */
    private final Set<String> loadedImages = new LinkedHashSet<>();
    private ViewNode root;
    /** The last video timer request's duration; a card may start its schedule before its views exist. */
    private Long videoDuration;

    public PreviewHost(int handle, VirtualClock clock, BridgeFixture bridge, Path templateFolder) {
        this.handle = handle;
        this.clock = clock;
        this.bridge = bridge;
        this.templateFolder = templateFolder;
    }

    public int handle() { return handle; }
    public VirtualClock clock() { return clock; }

    /** The card's root view; null while the card shows nothing. */
    public ViewNode root() { return root; }

    /**
     * Shows a card: the set-up natives in the order the engine needs them, the
     * container width exact and the height exact or (null) as tall as the
     * content, then the images that loaded marked dirty. The engine reports
     * faults to its log (logEnabled) and goes on (debugMode off), as in a
     * release app.
     */
    public void showCard(String template, String data, int width, Integer height) {
        initMREngine(handle, true, false);
        updateEnv(handle);
        setScreenWidth(handle, width);
        loadTemplate(handle, template);
        setData(handle, data, "{}");
        initContainerSize(handle, width, height == null ? 0 : height, 1, height == null ? 0 : 1);
        initNode(handle);
        triggerInitEvent(handle);
        applyLayout(handle);
        root = PreviewComponent.nodeOf(createComponentTree(handle));
        settle();
    }

    /** A new container size; the scale stays the one the first width gave, as when a card's view is resized. */
    public void resize(int width, Integer height) {
        updateLayout(handle, width, height == null ? 0 : height, 1, height == null ? 0 : 1);
    }

    /** The animations played since the last call. */
    public List<Animation> takeAnimations() {
        List<Animation> played = List.copyOf(animations);
        animations.clear();
        return played;
    }

    /** The node with this id: breadth-first from the root, first match, as the engine finds its nodes. */
    public ViewNode find(String componentId) {
        return breadthFirst().stream().filter(node -> node.id.equals(componentId)).findFirst().orElse(null);
    }

    /** Every node of the tree of this type, in breadth-first order. */
    public List<ViewNode> nodesOfType(int type) {
        return breadthFirst().stream().filter(node -> node.type == type).toList();
    }

    private List<ViewNode> breadthFirst() {
        List<ViewNode> nodes = new ArrayList<>();
        if (root != null) {
            nodes.add(root);
        }
        for (int i = 0; i < nodes.size(); i++) {
            nodes.addAll(nodes.get(i).children);
        }
        return nodes;
    }

    /**
     * Tells the engine about every image that arrived since the last call, as an
     * app does when a picture finishes loading: a content-sized image is then
     * measured again from getContentSize. Never called from inside a host
     * method, since markDirty runs a flush of its own.
     */
    public void markLoadedImagesDirty() {
        while (!loadedImages.isEmpty()) {
            String id = loadedImages.iterator().next();
            loadedImages.remove(id);
            markDirty(handle, id);
        }
    }

    /** Runs what is due now on the clock and marks arrived images, until nothing is left to do. */
    public void settle() {
        do {
            markLoadedImagesDirty();
            clock.advance(0);
        } while (!loadedImages.isEmpty());
    }

    /** Shows a swiper page and reports the change to the engine, as a swipe by the user does. */
    public void showPage(ViewNode swiper, int page) {
        swiper.currentPage = page;
        sendSwiperEvent(handle, swiper.id, page);
    }

    // Views.

    @Override
    public MRComponent createComponent(
            int type, int[] ints, float[] floats, String[] strings, boolean[] booleans, GradientInfo gradient) {
        ViewNode node = new ViewNode(type, strings[PropertyTable.SLOT_ID]);
        for (int id : PropertyTable.idsOf(type)) {
            node.set(id, slotValue(id, ints, floats, strings, booleans));
        }
        node.onClick = strings[PropertyTable.SLOT_ON_CLICK];
        node.loopAnimation = strings[PropertyTable.SLOT_LOOP_ANIMATION];
        if (type == 6) {
            node.businessData = strings[PropertyTable.SLOT_BUSINESS_DATA];
        }
        node.gradient = gradient;
        if (type == 10) {
            node.videoDuration = videoDuration;
        }
        loadImageOf(node);
        MRComponent component = type == 8 ? new PreviewSwiperComponent(node, this) : new PreviewComponent(node);
        components.put(node, component);
        return component;
    }

    /** A slot's value, boxed as updateComponentProperty boxes it: the int slots become Float too. */
    private static Object slotValue(int id, int[] ints, float[] floats, String[] strings, boolean[] booleans) {
        if (PropertyTable.isFloatSlot(id)) {
            return floats[id];
        }
        if (PropertyTable.isIntSlot(id)) {
            return (float) ints[id - 100];
        }
        if (PropertyTable.isStringSlot(id)) {
            return strings[id - 200];
        }
        return booleans[id - 300];
    }

    @Override public void addRootView(MRComponent component) { root = PreviewComponent.nodeOf(component); }
    @Override public void removeRootView() { root = null; }

    @Override
    public MRComponent findComponentById(String componentId) {
        ViewNode node = find(componentId);
        return node == null ? null : components.get(node);
    }

    @Override
    public void updateComponentProperty(String componentId, int propertyId, Object value) {
        ViewNode node = find(componentId);
        if (node == null) {
            return;
        }
        node.set(propertyId, value);
        if (isImageSource(node, propertyId)) {
            loadImageOf(node);
        }
    }

    /** No tweening in pictures: the view jumps to the end value, and the animation is recorded for the tree file. */
    @Override
    public void playComponentAnimation(
            String componentId, int propertyId, Object value, int timing, int duration, int delay) {
        animations.add(new Animation(componentId, propertyId, value, timing, duration, delay));
        ViewNode node = find(componentId);
        if (node != null) {
            node.set(propertyId, value);
        }
    }

    // Images: "src" of an image, "poster" of a video, a file relative to the template's folder.

    private static boolean isImageSource(ViewNode node, int propertyId) {
        return (node.type == 5 && propertyId == PropertyTable.SRC)
                || (node.type == 10 && propertyId == PropertyTable.POSTER);
    }

    /** Loads the node's picture; a URL or a missing file leaves none, which draws a placeholder. */
    private void loadImageOf(ViewNode node) {
        if (node.type != 5 && node.type != 10) {
            return;
        }
        String source = node.text(node.type == 5 ? PropertyTable.SRC : PropertyTable.POSTER);
        BufferedImage image = readImage(source);
        node.image = image;
        node.naturalWidth = image == null ? 0 : image.getWidth();
        node.naturalHeight = image == null ? 0 : image.getHeight();
        if (image != null && node.type == 5) {
            loadedImages.add(node.id);
        }
    }

    private BufferedImage readImage(String source) {
        if (source.isEmpty() || source.startsWith("http://") || source.startsWith("https://")) {
            return null;
        }
        Path file = templateFolder.resolve(source);
        try {
            BufferedImage image = Files.isRegularFile(file) ? ImageIO.read(file.toFile()) : null;
            if (image == null) {
                System.err.println("mero-preview: cannot load image " + file);
            }
            return image;
        } catch (IOException | RuntimeException unreadable) {
            System.err.println("mero-preview: cannot load image " + file + ": " + unreadable.getMessage());
            return null;
        }
    }

    // Services.

    /**
     * Breaks the text exactly as the renderer will draw it. Width: the widest
     * line (the offered width when exact, at most the offered width when
     * bounded); height likewise from the line count. Both are rounded up to whole
     * pixels so that layout never cuts off what is drawn. style is the font weight.
     */
    @Override
    public float[] measureText(String text, float fontSize, int style, int maxLines, float lineHeight,
            float textInterval, float width, int widthMode, float height, int heightMode) {
        float maxWidth = widthMode == 0 ? Float.POSITIVE_INFINITY : width;
        TextBlock block = TextBlock.layout(text, fontSize, style, maxLines, lineHeight, textInterval, maxWidth);
        return new float[] {fit(block.width(), width, widthMode), fit(block.height(), height, heightMode)};
    }

    /** Measure modes: 0 undefined, 1 exactly, 2 at most. */
    private static float fit(float measured, float offered, int mode) {
        float whole = (float) Math.ceil(measured);
        return switch (mode) {
            case 1 -> offered;
            case 2 -> Math.min(whole, offered);
            default -> whole;
        };
    }

    @Override
    public void setTimeout(long delay, int jobId) {
        clock.schedule(delay, () -> executeTimeoutJob(handle, jobId));
    }

    /**
     * The video starts playing from position first (ms) now; entry i fires when
     * playback reaches times[i], so entries before the start never fire. second
     * is kept as the video's duration for the tree file.
     */
    @Override
    public void startVideoTimerTask(long second, int first, int[] times, int[] ids) {
        videoDuration = second;
        for (ViewNode video : nodesOfType(10)) {
            video.videoDuration = second;
        }
        for (int i = 0; i < times.length; i++) {
            int jobId = ids[i];
            if (times[i] >= first) {
                clock.schedule(times[i] - first, () -> executeVideoTimerJob(handle, jobId));
            }
        }
    }

    @Override
    public void sendALog(String message) {
        System.out.println("mero-preview: log: " + message);
    }

    @Override
    public void callJSB(String method, String paramsJson, long callbackId) {
        answer(method, reply -> handleResult(handle, reply, callbackId));
    }

    /** The reply is passed whole; the engine takes its "data" member. */
    @Override
    public void callJSBWithKeyPath(String method, String paramsJson, String keyPathJson, long callbackId) {
        answer(method, reply -> handleKeyPathResult(handle, reply, callbackId));
    }

    /** Answers from the fixture, inside the call (delay 0) or later on the clock; exactly once either way. */
    private void answer(String method, Consumer<String> deliver) {
        BridgeFixture.Reply reply = bridge.next(method);
        if (reply == null) {
            System.err.println("mero-preview: no bridge reply for " + method);
            reply = new BridgeFixture.Reply(Map.of(), 0);
        }
        Object value = reply.value();
        Runnable send = () -> {
            applyDownloadState(value);
            deliver.accept(Json.write(value));
        };
        if (reply.delayMs() == 0) {
            send.run();
        } else {
            clock.schedule(reply.delayMs(), send);
        }
    }

    /** The download model: a reply with "downloadStatus" moves the buttons of its package (all without one). */
    private void applyDownloadState(Object reply) {
        BridgeFixture.DownloadUpdate update = BridgeFixture.DownloadUpdate.of(reply);
        if (update == null) {
            return;
        }
        for (ViewNode button : nodesOfType(6)) {
            if (update.appliesTo(button.businessData)) {
                update.applyTo(button);
            }
        }
    }
}
