/// The page of one comparison on several kinds of machines: the answer, the kinds, functions by kinds, all points.
/// Needs dom.js, verdict.js, grid.js, table.js.

(() => {
    "use strict";

    const {el} = page;
    const run = page.data("run");
    const {kinds} = run.fleet;
    const share = part => `${Number((100 * part).toPrecision(3))}%`;
    const namesOf = point => Object.entries(point.parameters).map(([name, value]) => `${name}=${value}`).join(" ");
    const saying = point => {
        const mark = page.verdictOf(point);
        return `${mark.word}${point.reason ? ": " + point.reason : ""}, ${page.change(point.ratio[1])} (${page.interval(point.ratio)})`;
    };

    /// Functions with a point of that verdict on the kind.
    const functionsThatAre = (kind, key) => new Set(kind.comparison.points
        .filter(point => page.verdictOf(point).key === key).map(point => point.function)).size;
    const kindsWith = key => kinds.filter(kind => functionsThatAre(kind, key) > 0).map(kind => kind.kind);

    const headline = () => {
        const listed = names => names.length > 4 ? page.count(names.length, "kind") : names.join(", ");
        const [crash, slower, faster] = ["crash", "slower", "faster"].map(kindsWith);
        if (crash.length > 0) {
            return `The new build crashes on ${listed(crash)}.`;
        }
        if (slower.length > 0) {
            return `Something became slower on ${listed(slower)}.`;
        }
        return faster.length > 0 ? `Nothing became slower, something faster on ${listed(faster)}.`
                                 : "Nothing became slower or faster on any kind.";
    };

    const kindCard = kind => {
        const {summary, machine, warnings, finished} = kind.comparison;
        return el("div", {class: "card"}, el("h3", {}, kind.kind),
            el("p", {class: "small soft"}, [machine.processor, `${machine.mhz} MHz`, page.count(kind.sessions, "session"),
                finished ? null : "not finished"].filter(fact => fact).join(" \u00b7 ")),
            el("ul", {class: "legend"}, ...["slower", "faster", "same", "unsure"].map(key =>
                el("li", {}, page.badge(page.verdicts[key]), el("span", {class: "number"}, String(summary[key]))))),
            warnings.length > 0 ? el("ul", {class: "warnings small"}, ...warnings.map(text => el("li", {}, text))) : null);
    };

    const showAnswer = () => {
        const {sides, identical} = kinds[0].comparison;
        document.getElementById("main").append(el("header", {class: "answer", id: "answer"},
            el("p", {class: "eyebrow"}, "Fleet ", el("span", {class: "code"}, run.title)),
            el("h1", {}, headline()),
            el("p", {class: "sentence"}, "Old ", el("span", {class: "code"}, sides.old.name), ", new ",
                el("span", {class: "code"}, sides.new.name), identical ? ", the same to the byte" : "",
                `. ${page.count(kinds.length, "kind")} of machines; without any true difference the chance of a false "slower" or `
                    + `"faster" anywhere is at most ${share(run.fleet.family)}.`)));
        document.getElementById("nav").append(el("a", {href: "#answer"}, "Answer"));
        page.section("kinds", "Kinds of machines", el("div", {class: "pair-of-cards"}, ...kinds.map(kindCard)));
    };

    const cellOf = (line, kind) => {
        if (line.points[kind] === null) {
            return null;
        }
        const point = kinds[kind].comparison.points[line.points[kind]];
        const mark = page.verdictOf(point);
        const differs = mark.key === "slower" || mark.key === "faster";
        return {
            text: differs ? page.change(point.ratio[1]) : mark.sign,
            label: `${line.name} on ${kinds[kind].kind}: ${saying(point)}`,
            href: `#at-${kind}-${run.functions.indexOf(line)}`,
            kind: mark.key,
            level: differs ? page.level(point.ratio[1]) : 0,
        };
    };

    const showMap = () => {
        const node = page.section("map", "Functions by kinds", "The worst function stands first. A place tells the point that speaks for "
            + "its function on that kind, and leads to all of its points there.");
        page.grid(node, {label: "Functions by kinds", groups: [{
            caption: "change of time",
            columns: kinds.map(kind => kind.kind),
            rows: run.functions.map(line => ({head: line.name, cells: kinds.map((_, kind) => cellOf(line, kind))})),
        }]});
    };

    const showTable = () => {
        const rows = kinds.flatMap(kind => kind.comparison.points.map(point => ({kind: kind.kind, point, mark: page.verdictOf(point)})));
        const order = Object.values(page.verdicts).map(verdict => verdict.key);
        const node = page.section("points", "All points");
        const chosen = el("select", {id: "kind"}, el("option", {value: ""}, "all kinds"),
            ...kinds.map(kind => el("option", {value: kind.kind}, kind.kind)));
        const sought = el("input", {type: "search", id: "sought", placeholder: "function or parameter"});
        node.append(el("div", {class: "choosing"}, el("label", {for: "kind"}, "Kind ", chosen), el("label", {for: "sought"}, "Find ", sought)));
        const table = page.table(node, {caption: "All points of all kinds", rows, sort: 2, columns: [
            {title: "Kind", value: row => row.kind, show: row => row.kind},
            {title: "Point", kind: "wide", value: row => row.point.function + " " + namesOf(row.point),
                show: row => el("span", {}, el("span", {class: "code"}, row.point.function), " ",
                    el("span", {class: "soft small"}, namesOf(row.point)))},
            {title: "Verdict", value: row => order.indexOf(row.mark.key),
                show: row => el("span", {}, page.badge(row.mark), row.point.reason ? " " + row.point.reason : "")},
            {title: "Change", kind: "number", down: true, value: row => row.point.ratio[1], show: row => page.change(row.point.ratio[1])},
            {title: "Interval", kind: "number", value: row => row.point.ratio[0], show: row => page.interval(row.point.ratio)},
            {title: "Clocks", kind: "number", value: row => row.point.new,
                show: row => `${page.figure(row.point.old)} \u2192 ${page.figure(row.point.new)}`},
        ]});
        const filter = (isOf = row => row.point.function.includes(sought.value) || namesOf(row.point).includes(sought.value)) =>
            table.filter(row => (chosen.value === "" || row.kind === chosen.value) && isOf(row));
        chosen.addEventListener("change", () => filter());
        sought.addEventListener("input", () => filter());
        return (kind, name) => {
            chosen.value = kind;
            sought.value = name;
            filter(row => row.point.function === name);
            page.goTo("points");
        };
    };

    const showMethod = () => page.section("method", "Method", el("ul", {class: "method"}, ...[
        "Each session is a comparison of its own: two instruments, one on each build, take turns on one core of one machine.",
        "A kind of machines has verdicts of its own. Neither clocks nor ratios of different kinds meet.",
        "The word of a kind is that on which all of its sessions that can tell agree; the interval and the clocks are those of the first of "
            + "them. Sessions that contradict each other make it unsure (repeated).",
        "Every session has its share of the chance to err, and the shares add up to that of the whole.",
    ].map(line => el("li", {}, line))));

    const showData = () => page.section("data", "Data", "All of it as a document for programs.", el("div", {class: "buttons"},
        el("button", {type: "button", id: "get-json", click: () => page.download(run.title + ".json", "application/json",
            JSON.stringify(run.fleet, null, 2) + "\n")}, "Download JSON")));

    showAnswer();
    showMap();
    const showPoints = showTable();
    showMethod();
    showData();
    const follow = () => {
        const found = /^#at-(\d+)-(\d+)$/.exec(location.hash);
        if (found && kinds[found[1]] && run.functions[found[2]]) {
            showPoints(kinds[found[1]].kind, run.functions[found[2]].name);
        }
    };
    addEventListener("hashchange", follow);
    follow();
})();
