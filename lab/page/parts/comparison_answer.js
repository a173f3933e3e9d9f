/// The first screen of a comparison: the answer, the worst, the two builds, what disturbed.
/// Needs comparison_model.js.

(() => {
    "use strict";

    const {el} = page;
    const {document: doc, summary, course} = page.comparison;

    const headline = () => {
        const slower = page.comparison.functionsThatAre("slower");
        const faster = page.comparison.functionsThatAre("faster");
        if (summary.crashed > 0) {
            return `The new build crashes at ${page.count(summary.crashed, "point")}.`;
        }
        if (slower > 0) {
            return `${page.count(slower, "function")} became slower, ${faster || "none"} faster.`;
        }
        return faster > 0 ? `Nothing became slower, ${page.count(faster, "function")} became faster.`
                          : "Nothing became slower or faster.";
    };

    /// A verdict's number of points; leads to them.
    const tile = (verdict, number, choose) => el("button", {
        type: "button", class: "tile " + verdict.key, disabled: number === 0, click: () => choose(verdict.key),
    }, el("span", {class: "tile-number number"}, number.toLocaleString("en")), page.badge(verdict));

    const numbers = () => ["slower", "faster", "same", "unsure"].map(
        key => [page.verdicts[key], summary[key]]);

    const share = () => el("div", {class: "share", "aria-hidden": "true"},
        ...numbers().filter(([, number]) => number > 0)
            .map(([verdict, number]) => el("span", {class: verdict.key, style: {"flex-grow": number}})));

    const worstRow = point => el("li", {},
        el("div", {class: "worst-name"}, el("a", {href: point.href, class: "code"}, point.function),
            el("span", {class: "note soft small"}, point.names)),
        page.intervalDrawing(point),
        el("div", {class: "worst-change number"}, page.badge(point.mark, false), " ",
            el("strong", {class: "change " + point.mark.key}, page.change(point.middle)),
            el("span", {class: "note soft small"}, page.whyOf(point) || page.interval(point.ratio))));

    const worst = () => {
        const most = 5;
        const telling = page.comparison.speakers.filter(point => !["same", "faster"].includes(point.mark.key));
        const faster = page.comparison.speakers.filter(point => point.mark.key === "faster").reverse();
        const rows = [...telling, ...faster].slice(0, most);
        return el("div", {class: "card"},
            el("h2", {}, summary.slower > 0 || summary.crashed > 0 ? "The worst" : "Nothing is slower. Nearest to it"),
            rows.length > 0 ? el("ol", {class: "worst"}, ...rows.map(worstRow))
                            : el("p", {class: "soft"}, "Every point is the same within the margin."),
            telling.length + faster.length > most
                ? el("p", {class: "small soft"}, `and ${telling.length + faster.length - most} more in the map below`) : null);
    };

    const objectsOf = build => el("ul", {class: "plain small"}, ...build.objects.map(object => el("li", {},
        el("code", {}, object.path), el("br"), "SHA-256 ", el("code", {}, object.sha256),
        object.buildId ? el("span", {}, ", build-id ", el("code", {}, object.buildId)) : null)));

    const build = (side, name) => el("div", {class: "build"},
        el("h3", {}, name), el("p", {class: "code"}, side.name),
        side.keys ? el("p", {class: "small"}, "keys ", el("code", {}, side.keys)) : null,
        el("p", {class: "small soft"}, side.library),
        el("details", {class: "small"}, el("summary", {}, page.count(side.objects.length, "shared object")), objectsOf(side)));

    const machine = () => {
        const {processor, mhz, kernel, bits, core, siblings, hypervisor, governor} = doc.machine;
        const facts = [processor, mhz ? `${mhz} MHz` : null, `${bits} bits`, `core ${core}`,
            siblings && siblings !== String(core) ? `with siblings ${siblings}` : null, kernel,
            hypervisor ? `virtual (${hypervisor})` : null, governor ? `governor ${governor}` : null];
        const effort = `${page.count(course.pairs.length, "pair")} of processes in ${page.figure(doc.seconds, 3)} s`;
        return [...facts, effort, `seed ${doc.seed}`].filter(fact => fact).join(" · ");
    };

    const builds = () => el("div", {class: "card"}, el("h2", {}, "The two builds"),
        doc.identical ? el("p", {}, "Both are the same to the byte: this compares a build with itself.") : null,
        el("div", {class: "builds"}, build(doc.sides.old, "Old"), build(doc.sides.new, "New")),
        el("p", {class: "small soft machine"}, machine()));

    /// What the run itself shows of other work on the machine.
    const slowedDown = () => {
        const known = course.slices.filter(slice => slice !== null).length;
        if (known === 0) {
            return null;
        }
        const text = course.busy.length === 0 ? "No stretch of the run was slowed down by 8% or more."
            : `Calls were slowed down by 8% and more for ${(100 * course.busy.length / known).toFixed(0)}% of the run; `
                + "both builds met that alike.";
        return el("p", {class: "small soft"}, text);
    };

    const disturbed = () => el("div", {class: "card"}, el("h2", {}, "What disturbed"),
        doc.warnings.length > 0
            ? el("ul", {class: "warnings"}, ...doc.warnings.map(text => el("li", {}, text)))
            : el("p", {}, "Nothing was warned of."),
        slowedDown());

    const onlySide = (points, side) => points.length === 0 ? null : el("details", {class: "only"},
        el("summary", {}, `${page.count(points.length, "point")} of the ${side} build alone`),
        el("ul", {class: "plain small"}, ...points.map(point => el("li", {}, el("code", {}, point)))));

    /// Puts the first screen in; `choose` is told the verdict whose points are wanted.
    page.showAnswer = choose => {
        document.getElementById("main").append(el("header", {class: "answer", id: "answer"},
            el("p", {class: "eyebrow"}, "Comparison ", el("span", {class: "code"}, page.comparison.title),
                doc.finished ? "" : " · not finished"),
            el("h1", {}, headline()),
            el("p", {class: "sentence"}, page.comparison.sentence),
            el("div", {class: "tiles", role: "group", "aria-label": "Points by verdict; each lists its points"},
                ...numbers().map(([verdict, number]) => tile(verdict, number, choose))),
            share(),
            el("div", {class: "first"}, worst(), el("div", {class: "beside"}, disturbed(), builds())),
            onlySide(doc.onlyOld, "old"), onlySide(doc.onlyNew, "new")));
    };
})();
