/// The page of a comparison, from the answer to the data.
/// Needs all other scripts of a comparison.

(() => {
    "use strict";

    const {el} = page;
    const {document: doc, points, margin} = page.comparison;
    const share = part => `${Number((100 * part).toPrecision(3))}%`;

    const showMethod = () => {
        const lines = [
            `Two instruments, one on each build, run on one core and walk the same ${page.count(points.length, "point")}: a point is a `
                + "function at one combination of its parameters.",
            "At each point they take short turns in random order. What disturbs a machine lasts longer than a turn, meets both alike and "
                + "falls out of their ratio.",
            "Of a turn the quickest block of calls counts, less what reading the clock takes.",
            "The median of log(new / old) over its turns is what a pair of processes says of a point: a dot.",
            "Pairs are started again and again, on fresh copies of both libraries at fresh addresses, since the place of code and data alone "
                + "can make a build faster by some percent.",
            "The interval lies between two of the sorted values of the pairs, chosen by their number alone. It holds the median but for an "
                + "error of at most 2% a look, however the values are distributed.",
            `Slower: the whole interval is above the margin of ${share(margin)}. Faster: the whole is below it. Same: all of it is within. `
                + "Else it cannot be told, and the reason is said.",
            "What seems slower or faster is measured again by fresh pairs, and is said only if they show it too.",
            `Without any true difference the chance of a false "slower" or "faster" anywhere in the comparison is at most ${share(doc.family)}.`,
            "A verdict holds for this processor, these parameters and these keys. Where a function kept its machine code and yet changed, it "
                + "may have been moved in memory by a change elsewhere.",
        ];
        page.section("method", "Method in ten lines", el("ol", {class: "method"}, ...lines.map(line => el("li", {}, line))));
    };

    const showData = () => {
        const name = page.comparison.title;
        page.section("data", "Data", "What this page shows stands in it: the comparison as a document for programs, and its points as a "
            + "table.", el("div", {class: "buttons"},
            el("button", {type: "button", id: "get-json",
                click: () => page.download(name + ".json", "application/json", JSON.stringify(doc, null, 2) + "\n")}, "Download JSON"),
            el("button", {type: "button", id: "get-csv",
                click: () => page.download(name + ".csv", "text/csv", page.comparison.csv)}, "Download CSV")));
    };

    /// "#point-12": shows that point. False for any other place.
    const follow = goes => {
        const found = /^#point-(\d+)$/.exec(location.hash);
        const isPoint = found !== null && Number(found[1]) < points.length;
        if (isPoint) {
            page.showPoint(Number(found[1]), goes);
        }
        return isPoint;
    };

    const showRest = () => {
        if (points.length > 0) {
            page.showMap();
            page.showPointSection();
            page.showRatios();
            page.showCourse();
            page.showTable();
            page.showPoint(page.comparison.worst[0].index, false);
            addEventListener("hashchange", () => follow(true));
        }
        showMethod();
        showData();
        // what the address names was not there when the browser looked for it
        const named = location.hash && document.getElementById(location.hash.slice(1));
        if (points.length > 0 && !follow(true) && named) {
            named.scrollIntoView();
        }
    };

    document.getElementById("nav").append(el("a", {href: "#answer"}, "Answer"));
    page.showAnswer(key => page.chooseVerdict(key));
    // the answer is to be seen before thousands of points are laid out
    requestAnimationFrame(() => setTimeout(showRest));
})();
