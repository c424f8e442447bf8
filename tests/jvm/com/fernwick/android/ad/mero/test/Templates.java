package com.fernwick.android.ad.mero.test;

/** The cards the JVM tests drive. */
final class Templates {
    private Templates() {}

    /**
     * A row of a clickable title bound to "title", a badge shown by
     * "showBadge", a logo and an answer bound to "reply"; events for every way
     * in from the host.
     */
    static final String CARD = """
        {"variables": {"title": "Hello", "showBadge": false, "reply": "none"},
         "elements": {"$": 3, "nodeId": "root",
           "width": {"sizeType": 2, "value": 100}, "height": {"sizeType": 1, "value": 400}, "children": [
           {"$": 4, "nodeId": "title", "onClick": "tapTitle", "text": {"$": 3, "n": "title"},
            "fontSize": {"sizeType": 1, "value": 24}, "maxLines": 2},
           {"$": 0, "nodeId": "badge", "visible": {"$": 3, "n": "showBadge"},
            "width": {"sizeType": 1, "value": 40}, "height": {"sizeType": 1, "value": 40}},
           {"$": 5, "nodeId": "logo", "width": {"sizeType": 1, "value": 100}, "height": {"sizeType": 1, "value": 50}},
           {"$": 4, "nodeId": "answer", "text": {"$": 3, "n": "reply"}}]},
         "events": [
           {"n": "tapTitle", "a": [], "b": [{"$": 4, "n": "title", "value": "Tapped"}]},
           {"n": "showBadge", "a": [], "b": [{"$": 4, "n": "showBadge", "value": true}]},
           {"n": "hideBadge", "a": [], "b": [{"$": 4, "n": "showBadge", "value": false}]},
           {"n": "echo", "a": ["e"], "b": [{"$": 4, "n": "reply", "value": {"$": 1, "n": "e"}}]},
           {"n": "notification", "a": ["e"], "b": [{"$": 4, "n": "reply", "value": {"$": 1, "n": "e"}}]},
           {"n": "startTimer", "a": [], "b": [{"$": 5, "n": "p", "a": [99.9,
             {"$": 14, "a": [], "b": [{"$": 4, "n": "title", "value": "Timed"}]}]}]},
           {"n": "startVideo", "a": [], "b": [
             {"$": 5, "n": "x", "a": [0.5, {"$": 14, "a": [], "b": [{"$": 4, "n": "reply", "value": "at 0.5"}]}]},
             {"$": 5, "n": "x", "a": [1.5, {"$": 14, "a": [], "b": [{"$": 4, "n": "reply", "value": "at 1.5"}]}]},
             {"$": 5, "n": "y", "a": [3, 5]}]},
           {"n": "ask", "a": [], "b": [{"$": 5, "n": "k", "a": ["getUser", {"id": 7},
             {"$": 14, "a": ["r"], "b": [{"$": 4, "n": "reply", "value": {"$": 1, "n": "r"}}]}]}]},
           {"n": "askPath", "a": [], "b": [{"$": 4, "n": "reply",
             "value": {"$": 5, "n": "G", "a": ["getData", {"id": 7}, "user.age"]}}]},
           {"n": "log", "a": [], "b": [{"$": 5, "n": "i", "a": ["from script"]}]}]}
        """;

    /** One node of every kind with the properties its slots carry, and a flattened group. */
    static final String EVERY_KIND = """
        {"variables": {"page": ""},
         "elements": {"$": 3, "nodeId": "root", "children": [
           {"$": 0, "nodeId": "view", "onClick": "tapView",
            "width": {"sizeType": 1, "value": 200}, "height": {"sizeType": 1, "value": 100},
            "paddingLeft": {"sizeType": 1, "value": 4}, "borderTop": {"sizeType": 1, "value": 2},
            "opacity": 0.5, "rotationZ": 45, "translateX": 3, "cornerLeftTop": {"sizeType": 1, "value": 8},
            "backgroundColor": "#FF0000FF", "borderColor": "#00FF00FF", "loopAnimation": {"name": "pulse"},
            "backgroundGradient": {"angle": 90.8, "colors": ["#0", "#1", "#2", "#3", "#4"],
              "locations": [0, 0.25, 0.5, 0.75, 1]}},
           {"$": 4, "nodeId": "text", "text": "Hi", "textColor": "#123456FF", "maxLines": 3, "fontWeight": 700,
            "textAlign": 1, "fontSize": {"sizeType": 1, "value": 28}, "lineHeight": {"sizeType": 1, "value": 34},
            "textInterval": {"sizeType": 1, "value": 2}},
           {"$": 5, "nodeId": "image", "src": "https://cdn.example/a.png", "scaleMode": 2},
           {"$": 6, "nodeId": "progress", "businessData": {"appId": 12}, "fontSize": {"sizeType": 1, "value": 20},
            "fontWeight": 500, "dl_color_normal": "#A1", "dl_color_text": "#A2", "dl_color_initial": "#A3",
            "dl_color_progress": "#A4", "dl_color_progressBg": "#A5", "dl_text_normal": "Get",
            "dl_text_active": "Loading", "dl_text_paused": "Paused", "dl_text_finished": "Open",
            "dl_text_installed": "Installed"},
           {"$": 7, "nodeId": "rating", "rating_score": 4.5, "rating_star_color": "#FFD700FF",
            "rating_star_size": 12, "rating_empty_opacity": 0.3},
           {"$": 8, "nodeId": "swiper", "list": ["a", "b"], "index": "index", "item": "item", "duration": 400,
            "interval": 3000, "autoplay": true, "circular": true, "swiperDirection": 1, "touchable": true,
            "onSwiperChange": "pageChanged",
            "width": {"sizeType": 1, "value": 750}, "height": {"sizeType": 1, "value": 300},
            "children": [{"$": 4, "nodeId": "page", "text": {"$": 1, "n": "item"}}]},
           {"$": 9, "nodeId": "custom", "customType": "lottie", "extra": "{\\"loop\\":true}"},
           {"$": 10, "nodeId": "video", "videoModel": "m", "videoId": "v1", "playUrl": "u", "token": "t",
            "domain": "d", "poster": "p", "autoplay": true, "muted": true, "loop": false, "pauseOnHide": true,
            "autoPrepare": true, "displayMode": 2, "fullscreenMode": 1, "initTime": 12.9, "preloadKey": "pk",
            "cacheSize": 1024, "tag": "tg", "subTag": "st"},
           {"$": 11, "nodeId": "blur", "blurRadius": 8, "blurAlpha": 0.6},
           {"$": 4, "nodeId": "pageInfo", "text": {"$": 3, "n": "page"}},
           {"$": 3, "nodeId": "group", "isEmpty": true, "children": [
             {"$": 0, "nodeId": "inner1"}, {"$": 0, "nodeId": "inner2", "visible": false}, {"$": 0, "nodeId": "inner3"}]}]},
         "events": [{"n": "pageChanged", "a": ["e"], "b": [{"$": 4, "n": "page", "value": {"$": 1, "n": "e"}}]}]}
        """;

    /** An animated opacity, a boxed boolean, an image, and a root shown later. */
    static final String LIVE_UPDATES = """
        {"variables": {"alpha": 1, "play": false, "showRoot": false},
         "elements": {"$": 3, "nodeId": "root", "visible": {"$": 3, "n": "showRoot"}, "children": [
           {"$": 0, "nodeId": "fade", "opacity": {"$": 3, "n": "alpha"},
            "transition": {"opacity": {"timing": 2, "duration": 300, "delay": 10.9}}},
           {"$": 10, "nodeId": "player", "autoplay": {"$": 3, "n": "play"}},
           {"$": 5, "nodeId": "photo", "width": {"sizeType": 1, "value": 100}}]},
         "events": [
           {"n": "dim", "a": [], "b": [{"$": 4, "n": "alpha", "value": 0.5}]},
           {"n": "play", "a": [], "b": [{"$": 4, "n": "play", "value": true}]},
           {"n": "show", "a": [], "b": [{"$": 4, "n": "showRoot", "value": true}]}]}
        """;
}
