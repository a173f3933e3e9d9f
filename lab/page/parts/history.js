/// The page of a history: the answer, a line a function, the changes, the builds.
/// Needs dom.js, verdict.js and table.js; history_level.js, which comes after, draws one point and ends the page.

(() => {
    "use strict";

    const {el} = page;
    const history = page.data("history");
    const {builds, functions, since} = history;
    const spread = 1.96; // standard deviations of 95%

    /// Points in the order of telling, with the names of their functions.
    const points = functions.flatMap(one => one.points.map((point, i) => ({...point, function: one.function,
        others: one.points.length - 1, first: i === 0})));
    points.forEach((point, i) => point.index = i);

    const label = build => builds[build].label;
    const isShown = one => one.to > since;
    const shownOf = point => [...point.changes, ...point.departures].filter(isShown).sort((a, b) => a.to - b.to);
    const side = one => one.size.log > 0 ? "slower" : "faster";
    const inDoubt = one => one.kind === "once" || one.kind === "fresh";
    const isChange = one => one.kind === "step" || one.kind === "drift";

    /// "+3.02% to +3.30%" of {log, error}.
    const interval = size => `${page.change(Math.exp(size.log - spread * size.error))} to `
        + page.change(Math.exp(size.log + spread * size.error));

    const words = {
        step: one => `at ${label(one.to)}`,
        drift: one => `in small steps from ${label(one.from)} to ${label(one.to)}`,
        spike: one => `at ${label(one.to)} alone, gone after it`,
        once: one => `at ${label(one.to)}, seen by one comparison`,
        fresh: one => `at ${label(one.to)}, not measured again yet`,
    };
    const tell = one => `${page.change(Math.exp(one.size.log))} ${words[one.kind](one)}`;

    /// The sign and word of a change: what is not certain is "cannot tell".
    const badge = one => page.badge(page.verdicts[isChange(one) ? side(one) : "unsure"], false);

    const told = (point, none) => {
        const all = shownOf(point);
        return all.length === 0 ? el("span", {class: "soft"}, none) : el("ul", {class: "plain"},
            ...all.map(one => el("li", {}, badge(one), " ", tell(one))));
    };

    const headline = () => {
        const has = test => functions.filter(one => one.points.some(point => point.changes.some(change => isShown(change)
            && test(change)))).length;
        const slower = has(change => change.size.log > 0);
        const faster = has(change => change.size.log < 0);
        if (slower + faster === 0) {
            return "No function has changed";
        }
        const parts = [slower > 0 ? `${page.count(slower, "function")} became slower` : "",
            faster > 0 ? `${page.count(faster, "function")} became faster` : ""];
        return parts.filter(part => part).join(", ");
    };

    const showAnswer = () => {
        const first = label(since);
        const notes = [
            ...history.breaks.map(one => `The chain is broken at ${label(one.build)} (${one.reason}) for ${page.count(one.points, "point")}: `
                + "levels begin anew there."),
            ...history.others.map(one => `What was measured by another method is not put together with this: ${one.differs}.`),
        ];
        document.getElementById("nav").append(el("a", {href: "#answer"}, "Answer"));
        document.getElementById("main").append(el("section", {id: "answer", class: "answer"},
            el("p", {class: "eyebrow"}, `${page.count(builds.length, "build")}, ${label(0)} to ${label(builds.length - 1)}, by `
                + page.count(history.comparisons, "comparison")),
            el("h1", {}, headline()),
            el("p", {class: "sentence"}, `${history.sentence} The next build is to be measured against `
                + `${label(history.good)}. Levels are against ${first}.`),
            el("p", {class: "soft small"}, `${history.method.processor}, ${history.method.bits} bits${history.method.keys ? ", " : ""}`
                + history.method.keys),
            notes.length === 0 ? null : el("div", {class: "card"}, el("ul", {class: "plain"}, ...notes.map(note => el("li", {}, note))))));
    };

    /// A point's level over all builds, in a box of 100 by 30: builds across, change upwards.
    const line = point => {
        const known = point.levels.flatMap((level, build) => level === null ? [] : [{build, value: level[0], error: spread * level[1],
            chain: level[2]}]);
        const box = el("svg:svg", {class: "level-line", viewBox: "0 0 100 30", preserveAspectRatio: "none", role: "img",
            "aria-label": "Level over builds: " + (shownOf(point).map(tell).join(", ") || "no change")});
        if (known.length === 0) {
            return box;
        }
        const margin = Math.log1p(history.margin);
        const least = known.reduce((low, one) => Math.min(low, one.value - one.error), -2 * margin);
        const most = known.reduce((high, one) => Math.max(high, one.value + one.error), 2 * margin);
        const x = build => builds.length > 1 ? 100 * build / (builds.length - 1) : 50;
        const y = value => 30 * (most - value) / (most - least);
        box.append(el("svg:rect", {class: "margin", x: 0, width: 100, y: y(margin), height: y(-margin) - y(margin)}));
        const chains = [...new Set(known.map(one => one.chain))];
        for (const chain of chains) {
            const own = known.filter(one => one.chain === chain);
            const path = list => list.map(([build, value]) => `${x(build).toFixed(2)},${y(value).toFixed(2)}`).join(" ");
            box.append(
                el("svg:polygon", {class: "range", points: path([...own.map(one => [one.build, one.value + one.error]),
                    ...own.map(one => [one.build, one.value - one.error]).reverse()])}),
                el("svg:polyline", {class: "level", points: path(own.map(one => [one.build, one.value]))}));
            if (chain !== chains[0]) {
                box.append(el("svg:line", {class: "cut", x1: x(chain), x2: x(chain), y1: 0, y2: 30}));
            }
        }
        for (const one of shownOf(point).filter(one => one.kind !== "spike")) {
            box.append(el("svg:line", {class: "mark " + (isChange(one) ? side(one) : "unsure"), x1: x(one.to), x2: x(one.to), y1: 0, y2: 30}));
        }
        return box;
    };

    const nowNode = point => point.now === null ? el("span", {}, "not known") : el("div", {},
        el("strong", {}, page.change(Math.exp(point.now.size.log))),
        el("span", {class: "note"}, interval(point.now.size)),
        point.now.from === since ? null : el("span", {class: "note"}, `since ${label(point.now.from)}`));

    const nameNode = point => el("div", {}, el("a", {href: "#level-" + point.index, class: "code"}, point.function),
        el("span", {class: "note"}, point.parameters + (point.first && point.others > 0 ? `, of ${point.others + 1} points` : "")));

    const showFunctions = () => {
        const section = page.section("functions", "Functions", "A line a function: the level of the point that tells most, over all "
            + `builds. The shade around the line is its 95%, the grey band the margin of ${100 * history.margin}%, an upright line a `
            + "change, a dashed one a change in doubt or a break of the chain. A name leads to the builds.");
        page.table(section, {
            caption: "Functions",
            columns: [
                {title: "Function", kind: "wide", value: point => point.function, show: nameNode},
                {title: "Now", kind: "number", down: true, value: point => point.now === null ? null : point.now.size.log, show: nowNode},
                {title: "Over builds", kind: "drawn", value: point => point.index, show: line},
                {title: "Changes", value: point => point.index, show: point => told(point, "none")},
            ],
            rows: points.filter(point => point.first),
        });
    };

    const showChanges = () => {
        const rows = points.flatMap(point => shownOf(point).map(one => ({point, one})));
        const section = page.section("changes", "Changes of all points", rows.length === 0 ? "There is none." :
            "What is certain first, then what one comparison alone has seen, and spikes: builds that were off by themselves.");
        if (rows.length === 0) {
            return;
        }
        const rank = ({one}) => isChange(one) ? 0 : inDoubt(one) ? 1 : 2;
        rows.sort((a, b) => rank(a) - rank(b) || a.one.to - b.one.to);
        page.table(section, {
            caption: "Changes",
            columns: [
                {title: "What", value: ({one}) => one.kind, show: ({one}) => el("div", {}, badge(one), " ", one.kind)},
                {title: "Build", value: ({one}) => one.to, show: ({one}) => label(one.to)},
                {title: "Size", kind: "number", down: true, value: ({one}) => one.size.log, show: ({one}) => el("div", {},
                    el("strong", {}, page.change(Math.exp(one.size.log))), el("span", {class: "note"}, interval(one.size)))},
                {title: "Function and parameters", kind: "wide", value: ({point}) => `${point.function} ${point.parameters}`,
                    show: ({point}) => el("div", {}, el("a", {href: "#level-" + point.index, class: "code"}, point.function),
                        el("span", {class: "note"}, point.parameters))},
                {title: "Certain at", value: ({one}) => one.told === undefined ? null : one.told,
                    show: ({one}) => one.told === undefined ? "" : label(one.told)},
            ],
            rows,
        });
    };

    const showBuilds = () => {
        const section = page.section("builds", "Builds", "In their order. The same identity means the same bytes.");
        page.table(section, {
            caption: "Builds",
            columns: [
                {title: "Label", value: one => one.label, show: one => one.label},
                {title: "Revision", value: one => one.revision, show: one => el("span", {class: "code"}, one.revision)},
                {title: "Day", value: one => one.day, show: one => one.day},
                {title: "Identity", value: one => one.identity, show: one => el("span", {class: "code"}, one.identity.slice(0, 12))},
                {title: "Library", kind: "wide", value: one => one.library, show: one => one.library},
            ],
            rows: builds.slice().reverse(),
        });
    };

    showAnswer();
    showFunctions();
    page.history = {history, points, label, shownOf, tell, told, side, isChange, spread, interval, showChanges, showBuilds};
})();
