/// The views of all points of a comparison: map, ratios, run over time, table.
/// Needs comparison_model.js, chart.js, grid.js, table.js.

(() => {
    "use strict";

    const {el} = page;
    const {points, functions, margin, course} = page.comparison;
    const percent = ratio => ratio === null ? null : 100 * (ratio - 1);

    /// What a point says in one line.
    page.saying = point => `${point.mark.word}${point.reason ? ": " + point.reason : ""}, ${page.change(point.middle)}`
        + ` (${page.interval(point.ratio)})`;

    // the map

    const rowsOfGroup = 24;
    const casesOfRow = 6;

    const cellText = point => {
        if (!["slower", "faster"].includes(point.mark.key)) {
            return point.mark.sign;
        }
        const size = Math.abs(percent(point.middle));
        return (point.middle > 1 ? "+" : "\u2212") + size.toFixed(size < 9.95 ? 1 : 0);
    };

    const cell = point => point === undefined ? null : {
        text: cellText(point),
        label: `${point.function} ${point.names}: ${page.saying(point)}`,
        href: point.href,
        kind: point.mark.key,
        level: ["slower", "faster"].includes(point.mark.key) ? page.level(point.middle) : 0,
    };

    const columnOf = point => point.family.axis === null ? (point.along - 1) % casesOfRow + 1 : point.along;

    /// Rows of a function's points by their other parameters. A place that is taken begins another row.
    const rowsOf = family => {
        const rows = [];
        for (const point of family.points) {
            const column = columnOf(point);
            let row = rows.find(one => one.note === point.rest && !one.at.has(column));
            if (!row) {
                row = {note: point.rest, at: new Map()};
                rows.push(row);
            }
            row.at.set(column, point);
        }
        return rows;
    };

    /// Functions with the same parameters share the heads of columns.
    const shapeOf = family => family.axis === null ? "" : Object.keys(family.points[0].parameters).join("\n") + "\n" + family.axis;

    const captionOf = family => {
        if (family.axis === null) {
            return "case by case";
        }
        const others = Object.keys(family.points[0].parameters).filter(name => name !== family.axis);
        return "by " + family.axis + (others.length > 0 ? ", rows by " + others.join(", ") : "");
    };

    /// The other parameters of a row, in short: names stand in the caption.
    const shortRest = (point, family) => Object.entries(point.parameters)
        .filter(([name]) => name !== family.axis).map(([, value]) => value).join(" · ");

    const gridRows = (family, columns) => {
        const rows = rowsOf(family).map((row, i) => {
            const [first] = row.at.values();
            return {
                sub: true,
                head: family.axis === null ? `cases ${i * casesOfRow + 1} to ${i * casesOfRow + row.at.size}` : shortRest(first, family),
                cells: columns.map(column => cell(row.at.get(column))),
            };
        });
        return rows.length === 1 ? [{...rows[0], head: family.name, sub: false}] : [{span: family.name}, ...rows];
    };

    const groups = () => {
        const byShape = new Map();
        for (const family of functions.values()) {
            byShape.set(shapeOf(family), [...(byShape.get(shapeOf(family)) || []), family]);
        }
        const made = [];
        for (const families of byShape.values()) {
            const taken = families.flatMap(family => family.points.map(columnOf));
            const columns = [...new Set(taken)].sort((a, b) => a - b);
            const heads = columns.map(column => families[0].axis === null ? "" : column.toLocaleString("en", {useGrouping: false}));
            let rows = [];
            const flush = () => {
                if (rows.length > 0) {
                    made.push({caption: captionOf(families[0]), columns: heads, rows});
                }
                rows = [];
            };
            for (const family of families) {
                const own = gridRows(family, columns);
                if (rows.length + own.length > rowsOfGroup) {
                    flush();
                }
                rows.push(...own);
            }
            flush();
        }
        return made;
    };

    page.showMap = () => {
        const section = page.section("map", "Map", "Every point, a row a function and a column a length. A cell leads to its "
            + "point; arrow keys move from cell to cell. The figure is the change in percent: + is slower.");
        const keys = ["slower", "faster", "same", "unsure", "crash"].filter(key => points.some(point => point.mark.key === key));
        section.append(el("ul", {class: "legend"}, ...keys.map(key => el("li", {}, page.badge(page.verdicts[key])))));
        page.grid(section, {label: "Functions by parameter", groups: groups()});
    };

    // all ratios

    /// A triangle that points to more time or to less.
    const drawSign = (ctx, x, y, isSlower) => {
        const size = 4.5 * devicePixelRatio * (isSlower ? 1 : -1);
        ctx.beginPath();
        ctx.moveTo(x, y - size);
        ctx.lineTo(x - size, y + size);
        ctx.lineTo(x + size, y + size);
        ctx.fill();
    };

    /// The interval of a point at x as a bar from end to end of what is known, its middle as a sign or a dash.
    const drawInterval = (plot, point, x, thick, colours) => {
        const {ctx, bbox} = plot;
        const y = (ratio, end) => ratio === null ? end : plot.valToPos(percent(ratio), "y", true);
        const top = y(point.ratio[2], bbox.top);
        const bottom = y(point.ratio[0], bbox.top + bbox.height);
        const differs = ["slower", "faster"].includes(point.mark.key);
        const wide = differs ? Math.max(thick, 3 * devicePixelRatio) : thick;
        ctx.fillStyle = colours[point.mark.key] || colours.edge;
        ctx.globalAlpha = point.mark.key === "same" ? 0.35 : differs ? 1 : 0.8;
        ctx.fillRect(x - wide / 2, top, wide, Math.max(bottom - top, devicePixelRatio));
        ctx.globalAlpha = 1;
        if (differs) {
            drawSign(ctx, x, y(point.middle), point.mark.key === "slower");
        } else {
            ctx.fillStyle = colours.crash;
            ctx.fillRect(x - wide / 2, y(point.middle) - devicePixelRatio / 2, wide, devicePixelRatio);
        }
    };

    const drawIntervals = (plot, sorted) => {
        const {ctx, bbox} = plot;
        const [slower, faster, edge, crash] = ["slower", "faster", "edge", "ink"].map(page.colour);
        const thick = Math.max(devicePixelRatio, Math.min(6 * devicePixelRatio, 0.6 * bbox.width / sorted.length));
        sorted.forEach((point, i) => drawInterval(plot, point, plot.valToPos(i + 1, "x", true), thick, {slower, faster, edge, crash}));
    };

    page.showRatios = () => {
        const section = page.section("ratios", "All ratios", "Each point's change with its interval, the slowest first. The scale "
            + "is even up to the margin and logarithmic beyond. A click leads to the point.");
        const sorted = points.filter(point => point.middle !== null).sort((a, b) => b.middle - a.middle);
        if (sorted.length === 0) {
            section.append(el("p", {}, "No point was measured."));
            return;
        }
        const ends = sorted.flatMap(point => point.ratio).filter(ratio => ratio !== null).map(percent);
        const low = ends.reduce((a, b) => Math.min(a, b));
        const high = ends.reduce((a, b) => Math.max(a, b));
        page.chart(section, {
            label: "Change of all points with intervals, sorted",
            height: 340,
            keys: [["slower", "▲ slower"], ["faster", "▼ faster"], ["same", "? cannot tell"], ["pale", "= same"],
                ["margin", `margin of ${100 * margin}%`]],
            build: () => ({
                data: [sorted.map((point, i) => i + 1), sorted.map(point => percent(point.middle))],
                series: [{}, {paths: () => null, points: {show: false}}],
                scales: {
                    x: {time: false, range: () => [0.5, sorted.length + 0.5]},
                    y: page.changeScale(100 * margin, low, high),
                },
                axes: [page.axis({label: "points, slowest first", grid: {show: false}}), page.changeAxis()],
                hooks: {
                    drawClear: [plot => page.band(plot, percent(1 / (1 + margin)), 100 * margin, page.colour("margin"))],
                    draw: [plot => drawIntervals(plot, sorted)],
                },
            }),
            describe: i => [sorted[i].function, sorted[i].names, page.saying(sorted[i])],
            pick: i => location.hash = sorted[i].href,
        });
    };

    // the run over time

    /// Busy slices that follow each other, as [first, one behind the last].
    const stretches = () => {
        const all = [];
        for (const i of course.busy) {
            if (all.length > 0 && all.at(-1)[1] === i) {
                all.at(-1)[1] = i + 1;
            } else {
                all.push([i, i + 1]);
            }
        }
        return all;
    };

    page.showCourse = () => {
        const section = page.section("run", "The run over time", "How much longer than undisturbed a call took while the comparison "
            + "ran, as both builds met it, and a fixed piece of work between pairs. Busy stretches are shaded.");
        if (course.slices.length === 0) {
            section.append(el("p", {}, "Nothing was measured."));
            return;
        }
        const middles = course.slices.map((slice, i) => (i + 0.5) * course.step);
        const slowed = course.slices.map(slice => slice === null ? null : 100 * (slice - 1));
        // a pair's state was read before its first turn, its time when it had ended
        const starts = course.pairs.map(([, seconds], i) => i === 0 ? 0 : course.pairs[i - 1][1]);
        const canary = course.pairs.map(([, , busyness]) => 100 * (busyness - 1));
        const unique = starts.map((start, i) => start + i * 1e-9);
        const data = uPlot.join([[middles, slowed], [unique, canary]]);
        const busy = plot => {
            const {ctx, bbox} = plot;
            ctx.fillStyle = page.colour("busy");
            for (const [begin, end] of stretches()) {
                const from = plot.valToPos(begin * course.step, "x", true);
                ctx.fillRect(from, bbox.top, plot.valToPos(end * course.step, "x", true) - from, bbox.height);
            }
        };
        const text = value => value.toFixed(value < 10 ? 1 : 0) + "%";
        page.chart(section, {
            label: "Slowdown over time",
            height: 240,
            keys: [["line", "calls under test"], ["dot", "fixed piece of work"], ["busy", "busy: slowed down by 8% and more"]],
            build: () => ({
                data,
                series: [{},
                    {stroke: page.colour("accent"), width: 2, points: {show: false}},
                    {paths: () => null, points: {show: true, size: 6, width: 0, fill: page.colour("ink")}}],
                scales: {x: {time: false}, y: {range: (plot, low, high) => [0, Math.max(10, 1.1 * high)]}},
                axes: [
                    page.axis({label: "seconds", grid: {show: false}}),
                    page.axis({size: 52, values: (plot, splits) => splits.map(split => `+${split}%`)}),
                ],
                hooks: {drawClear: [busy]},
            }),
            describe: i => [`after ${data[0][i].toFixed(1)} s`,
                ...(typeof data[1][i] === "number" ? [`calls +${text(data[1][i])}`] : []),
                ...(typeof data[2][i] === "number" ? [`fixed piece of work +${text(data[2][i])}`] : [])],
        });
    };

    // the table

    const ranks = new Map(page.comparison.worst.map((point, i) => [point, i]));

    const clocks = (point, value) => el("div", {}, value === null ? "?" : page.figure(value / point.divisor, 3),
        el("span", {class: "note"}, "clocks/" + point.unit));

    const columns = [
        {title: "Verdict", value: point => ranks.get(point), show: point => el("div", {}, page.badge(point.mark),
            point.reason ? el("span", {class: "note"}, page.whyOf(point)) : null)},
        {title: "Function and parameters", kind: "wide", value: point => `${point.function} ${point.names}`, show: point => el("div", {},
            el("a", {href: point.href, class: "code"}, point.function), el("span", {class: "note"}, point.names),
            ...point.marks.map(mark => el("span", {class: "mark"}, mark)))},
        {title: "Change", kind: "number", down: true, value: point => point.middle, show: point => el("div", {},
            el("strong", {class: "change " + point.mark.key}, page.change(point.middle)),
            el("span", {class: "note"}, page.interval(point.ratio)))},
        {title: "Interval", kind: "drawn", down: true, value: point => point.ratio[2] === null || point.ratio[0] === null
            ? null : point.ratio[2] / point.ratio[0], show: point => page.intervalDrawing(point)},
        {title: "Old", kind: "number", down: true, value: page.comparison.older, show: point => clocks(point, point.old)},
        {title: "New", kind: "number", down: true, value: page.comparison.newer, show: point => clocks(point, point.new)},
        {title: "Pairs", kind: "number", down: true, value: point => point.pairs, show: point => String(point.pairs)},
        {title: "Would show", kind: "number", value: point => point.smallest, show: point => page.change(point.smallest)},
    ];

    page.showTable = () => {
        const section = page.section("points", "All points", "A head sorts by its column. Clocks are of one unit of the table, "
            + "from the quietest moments of each build; the change comes from moments that both shared.");
        const search = el("input", {type: "search", id: "search", placeholder: "function or parameter=value", input: () => apply()});
        const boxes = Object.values(page.verdicts).filter(verdict => points.some(point => point.mark === verdict)).map(verdict => {
            const box = el("input", {type: "checkbox", checked: true, name: verdict.key, change: () => apply()});
            return {box, verdict, label: el("label", {class: "choice"}, box, page.badge(verdict))};
        });
        section.append(el("div", {class: "filters screen", role: "search", "aria-label": "Points"},
            el("label", {for: "search", class: "unseen"}, "Filter by function or parameters"), search,
            ...boxes.map(({label}) => label)));
        const table = page.table(section, {caption: "All points", columns, rows: page.comparison.worst, sort: 0});
        const apply = () => {
            const words = search.value.toLowerCase().split(/\s+/).filter(word => word);
            const wanted = new Set(boxes.filter(({box}) => box.checked).map(({verdict}) => verdict));
            table.filter(point => wanted.has(point.mark)
                && words.every(word => `${point.function} ${point.names}`.toLowerCase().includes(word)));
        };
        /// Shows the points of one verdict alone.
        page.chooseVerdict = key => {
            search.value = "";
            boxes.forEach(({box, verdict}) => box.checked = verdict.key === key || (key === "unsure" && verdict.key === "crash"));
            apply();
            page.goTo("points");
        };
    };
})();
