// Letters in a colour of the desktop are as easy to read as the accessibility guidelines ask for.

var NEEDED = 4.6; // a little more than 4.5, as colours are rounded

function channels(colour) {
    var digits = String(colour).slice(-6);
    var result = [];
    for (var i = 0; i < 6; i += 2)
        result.push(parseInt(digits.substr(i, 2), 16) / 255);
    return result;
}

function mixed(colour, other, share) {
    var from = channels(colour), to = channels(other), digits = "#";
    for (var i = 0; i < 3; ++i) {
        var value = Math.round(255 * (from[i] + (to[i] - from[i]) * share));
        digits += (value < 16 ? "0" : "") + value.toString(16);
    }
    return digits;
}

function luminance(colour) {
    var parts = channels(colour), weights = [0.2126, 0.7152, 0.0722], sum = 0;
    for (var i = 0; i < 3; ++i)
        sum += weights[i] * (parts[i] <= 0.04045 ? parts[i] / 12.92 : Math.pow((parts[i] + 0.055) / 1.055, 2.4));
    return sum;
}

function contrast(colour, other) {
    var a = luminance(colour), b = luminance(other);
    return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
}

// The colour itself where it can be read on that background, else one nearer to that of texts.
function readable(colour, background, text) {
    var result = mixed(colour, text, 0);
    for (var step = 1; step <= 20 && contrast(result, background) < NEEDED; ++step)
        result = mixed(colour, text, step / 20);
    return result;
}
