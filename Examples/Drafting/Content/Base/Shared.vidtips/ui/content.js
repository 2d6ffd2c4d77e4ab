// Reads a tip's element into plain texts. Texts of a tip that serves every locale name the context in which
// their translations are found; any text may hold placeholders for what the host set.

function localised(tip, text) {
    var source = text.replace(/\s+/g, " ").replace(/^ | $/g, "");
    if (source === "")
        return "";
    var context = tip.attribute("context");
    var translated = context ? vidTipView.translate(source, context) : "";
    return vidTipView.interpolate(translated ? translated : source);
}

// The user interface's own words; an untranslated word stays as it is.
function word(text) {
    var translated = vidTipView.translate(text, "VidtipsUI");
    return translated ? translated : text;
}

function attribute(tip, name) {
    return tip.hasAttribute(name) ? localised(tip, tip.attribute(name)) : "";
}

function text(tip, name) {
    var element = tip.childElement(name);
    return element ? localised(tip, element.content) : "";
}

function texts(tip, name) {
    var elements = tip.childElementList(name);
    var result = [];
    for (var i = 0; i < elements.length; ++i)
        result.push(localised(tip, elements[i].content));
    return result;
}

function resource(tip, name) {
    var element = tip.childElement(name);
    return element ? element.attribute("source") : "";
}

// The address of the picture that a tip names. For a file that there is not, the view gives the name of the
// folder: nothing is shown then, and the log of the application names the file.
function pictureUrl(tip, name) {
    var path = vidTipView.findResource(name);
    if (path.split("/").pop() !== name.split("/").pop()) {
        vidTipView.debugLog("Tip \"" + tip.attribute("key") + "\": Could not find the picture " + name);
        return "";
    }
    return "file://" + (path.charAt(0) === "/" ? "" : "/") + encodeURI(path).replace(/#/g, "%23").replace(/\?/g, "%3F");
}

// A property that the host may have set; the fallback when it did not.
function hostProperty(name, fallback) {
    var placeholder = "%(" + name + ")s";
    var value = vidTipView.interpolate(placeholder);
    return value === placeholder ? fallback : value;
}
