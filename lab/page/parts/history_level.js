/// One point of a history, build by build, and what stands at the end of its page.
/// Needs chart.js and history.js.

(() => {
    "use strict";

    const {el} = page;
    const {history, points, label, shownOf, told, side, isChange, spread} = page.history;
    const {builds} = history;
    const percent = log => 100 * Math.expm1(log);
    let point = points[0];

    /// Columns of the chart: build, level and both ends of its 95%, in percent.
    const columns = () => {
        const of = use => point.levels.map(level => level === null ? null : percent(use(level)));
        return [builds.map((build, i) => i), of(level => level[0]), of(level => level[0] - spread * level[1]),
            of(level => level[0] + spread * level[1])];
    };

    /// First builds of the chains after the first one.
    const starts = () => [...new Set(point.levels.filter(level => level !== null).map(level => level[2]))].slice(1);

    /// No line leads over a break.
    const gaps = (plot, series, first, last, own) => [...own, ...starts().map(build => [build - 1, build].map(
        x => Math.round(plot.valToPos(x, "x", true))))].sort((a, b) => a[0] - b[0]);

    const upright = (plot, build, colour, dash) => {
        const {ctx, bbox} = plot;
        const x = plot.valToPos(build, "x", true);
        ctx.save();
        ctx.strokeStyle = colour;
        ctx.lineWidth = 2 * devicePixelRatio;
        ctx.setLineDash(dash.map(length => length * devicePixelRatio));
        ctx.beginPath();
        ctx.moveTo(x, bbox.top);
        ctx.lineTo(x, bbox.top + bbox.height);
        ctx.stroke();
        ctx.restore();
    };
    const marks = plot => {
        for (const one of shownOf(point).filter(one => one.kind !== "spike")) {
            upright(plot, one.to, page.colour(isChange(one) ? side(one) : "edge"), isChange(one) ? [] : [4, 4]);
        }
        starts().forEach(build => upright(plot, build, page.colour("ink"), [2, 3]));
    };

    const build = () => {
        const data = columns();
        const shown = data.slice(1).flat().filter(value => value !== null);
        const margin = 100 * history.margin;
        const low = shown.reduce((a, b) => Math.min(a, b), -2 * margin);
        const high = shown.reduce((a, b) => Math.max(a, b), 2 * margin);
        const none = {paths: uPlot.paths.linear(), stroke: "transparent", points: {show: false}, gaps};
        return {
            data,
            series: [{}, {stroke: page.colour("accent"), width: 2, gaps, points: {show: builds.length < 60, size: 5, fill: page.colour("accent")}},
                none, none],
            bands: [{series: [3, 2], fill: page.colour("range")}],
            scales: {x: {time: false, range: () => [-0.5, builds.length - 0.5]},
                y: {range: () => [low - 0.05 * (high - low), high + 0.05 * (high - low)]}},
            axes: [
                page.axis({label: "builds", grid: {show: false},
                    values: (plot, splits) => splits.map(split => Number.isInteger(split) && builds[split] ? short(label(split)) : "")}),
                page.axis({size: 58, values: (plot, splits) => splits.map(split => (split > 0 ? "+" : split < 0 ? "\u2212" : "")
                    + Number(Math.abs(split).toPrecision(3)) + "%")}),
            ],
            hooks: {drawClear: [plot => page.band(plot, percent(-Math.log1p(history.margin)), margin, page.colour("margin"))],
                draw: [marks]},
        };
    };
    const short = text => text.length > 8 ? text.slice(0, 7) + "\u2026" : text;

    const describe = i => {
        const level = point.levels[i];
        const {revision, day} = builds[i];
        const lines = [label(i), [day, revision].filter(text => text).join(", ")];
        if (level === null) {
            lines.push("not known");
        } else {
            lines.push(`${page.change(Math.exp(level[0]))} against ${label(level[2])}`,
                `95%: ${page.interval([Math.exp(level[0] - spread * level[1]), 0, Math.exp(level[0] + spread * level[1])])}`);
        }
        return [...lines, ...shownOf(point).filter(one => one.to === i).map(page.history.tell)];
    };

    const showLevel = () => {
        const section = page.section("level", "One point over builds", "Its level against the first build of its chain. The error adds "
            + "up from build to build; a comparison with an old build makes it small again.");
        const names = [...new Set(points.map(one => one.function))];
        const functions = el("select", {id: "function", change: () => choose(points.find(one => one.function === functions.value))},
            ...names.map(name => el("option", {value: name}, name)));
        const parameters = el("select", {id: "parameters", change: () => choose(points[Number(parameters.value)])});
        const list = el("div", {class: "told"});
        section.append(el("div", {class: "choices"}, el("label", {for: "function"}, "Function", functions),
            el("label", {for: "parameters"}, "Parameters", parameters)));
        const chart = page.chart(section, {
            label: "Level over builds",
            height: 320,
            keys: [["line", "level"], ["range", "95%"], ["margin", `margin of ${100 * history.margin}%`], ["step", "change"],
                ["dashed", "in doubt, or a break of the chain"]],
            build,
            describe,
        });
        section.append(list);
        const fill = () => {
            functions.value = point.function;
            parameters.replaceChildren(...points.filter(one => one.function === point.function)
                .map(one => el("option", {value: one.index, selected: one === point}, one.parameters || "none")));
            const clocks = point.clocks === null ? "" : ` The last build took ${page.figure(point.clocks, 3)} clocks a call; figures of `
                + "other days are not comparable with that, ratios are.";
            list.replaceChildren(told(point, "No change in the shown range."), el("p", {class: "soft small"}, clocks), figures());
        };
        /// What measurements say of the point.
        const figures = () => {
            const box = el("div", {id: "figures"});
            if (point.figures.length > 0) {
                page.table(box, {
                    caption: "Measured",
                    columns: [
                        {title: "Build", value: one => one.build, show: one => one.build},
                        {title: "Day", value: one => one.day, show: one => one.day},
                        {title: `Clocks per ${point.unit}`, kind: "number", down: true, value: one => one.clocks, show: one => el("div", {},
                            el("strong", {}, page.figure(one.clocks, 4)),
                            el("span", {class: "note"}, `${page.figure(one.low, 4)} to ${page.figure(one.high, 4)}`))},
                        {title: "Processes", kind: "number", down: true, value: one => one.processes, show: one => String(one.processes)},
                    ],
                    rows: point.figures.slice().reverse(),
                });
                box.append(el("p", {class: "soft small"}, "Machines drift: figures of different days are records, and no level rests on them."));
            }
            return box;
        };
        const choose = one => {
            point = one;
            fill();
            chart.redraw();
        };
        fill();
        return choose;
    };

    const showMethod = () => {
        const margin = 100 * history.margin + "%";
        const lines = [
            "Each build was compared with an earlier one by instruments that take turns: what the machine does falls out of the ratio, and "
                + "figures of different days are never compared.",
            "Ratios are put together along the comparisons. Each build has the way with the least error from the first build of its chain; "
                + "variances of the logarithms add up along it.",
            "A comparison on another processor, with other keys or other turns belongs to another chain.",
            "Every pair of processes of every comparison gives one value. Where two builds do not differ its sign is a fair coin, so sums "
                + "that grow in one direction become unlikely, and how unlikely is known without any other assumption.",
            `A change is told when the pairs since some build make that certain, and the levels of two builds in a row lie more than ${margin} `
                + "away from it. A build that is off alone, a spike, is none.",
            "If two levels with a step between fit better than a straight line, it is a step, else a drift.",
            `Without any true difference the chance of telling any change is at most ${100 * history.family}% for a year of ${history.year} `
                + "builds, all points together.",
            "What one comparison called slower or faster, and is not certain yet, is in doubt: the next build is then measured against the "
                + "build before it, which decides.",
        ];
        page.section("method", "Method", el("ol", {class: "method"}, ...lines.map(line => el("li", {}, line))));
    };

    const showData = () => page.section("data", "Data", "What this page shows stands in it.", el("div", {class: "buttons"},
        el("button", {type: "button", id: "get-json", click: () => page.download("history.json", "application/json",
            JSON.stringify(history, null, 2) + "\n")}, "Download JSON")));

    const choose = showLevel();
    page.history.showChanges();
    page.history.showBuilds();
    showMethod();
    showData();
    const follow = () => {
        const found = /^#level-(\d+)$/.exec(location.hash);
        if (found !== null && Number(found[1]) < points.length) {
            choose(points[Number(found[1])]);
            page.goTo("level");
        }
    };
    addEventListener("hashchange", follow);
    follow();
})();
