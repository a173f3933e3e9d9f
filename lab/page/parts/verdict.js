/// Verdicts as they are shown: a sign, a word and a colour each, never a colour alone.
/// Needs dom.js.

(() => {
    "use strict";

    /// In the order in which they matter. `key` names the classes and colours of the style.
    page.verdicts = {
        crash: {key: "crash", sign: "✕", word: "crash"},
        slower: {key: "slower", sign: "▲", word: "slower"},
        faster: {key: "faster", sign: "▼", word: "faster"},
        unsure: {key: "unsure", sign: "?", word: "cannot tell"},
        same: {key: "same", sign: "=", word: "same"},
    };

    /// Reasons of "cannot tell", and what to do about them.
    page.reasons = {
        pairs: "The run ended before enough pairs were there. More time, or resume.",
        noise: "What ran beside disturbed the turns. Free the machine, above all the sibling of the core.",
        layout: "Each pair is steady and pairs disagree: the speed depends on where code and data lie in memory.",
        margin: "The difference is known well and lies across the margin. The interval is the answer.",
        grain: "One step of the clock is too much of a turn to say \"same\". Longer data would tell.",
        repeated: "A difference was seen, and fresh pairs did not show it often enough.",
        status: "The library's status differs between the builds: they do different work.",
        crash: "A build did not live through this point.",
    };

    /// The verdict of a point as the comparison's document has it.
    page.verdictOf = point => page.verdicts[point.reason === "crash" ? "crash" : point.verdict];

    /// How strong a change is, 1 to 3, for the depth of its colour.
    page.level = ratio => {
        const size = Math.abs(Math.log(ratio || 1));
        return size < Math.log(1.05) ? 1 : size < Math.log(1.2) ? 2 : 3;
    };

    /// The sign of a verdict, and its word: beside it, or for those who hear the page.
    page.badge = (verdict, withWord = true) => page.el("span", {class: "badge " + verdict.key},
        page.el("span", {class: "sign", "aria-hidden": "true"}, verdict.sign),
        page.el("span", {class: withWord ? "word" : "unseen"}, verdict.word));
})();
