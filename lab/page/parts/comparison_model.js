/// A comparison as its views need it: points with names and places, functions, what changes along a row of the map.
/// Needs dom.js, verdict.js.
///
/// page.comparison = {document, course, points, functions, margin, ...}; a point is what the document has, and:
///     index, href, names     its place, the link to it, its parameters as one text
///     mark, middle           verdict of page.verdicts; ratio or null
///     values                 [[pair, log(new / old), fresh], ...]
///     family, along, rest    its function; its value of the parameter along rows; the other parameters as text

(() => {
    "use strict";

    const run = page.data("comparison");
    const {comparison, pairs, course} = run;

    /// The parameter that a row of the map runs along: the one with most values, all of them numbers above 0. Of
    /// several the last, which turns fastest. null: there is none, and cases are counted.
    const axisOf = points => {
        let best = null;
        let most = 0;
        for (const name of Object.keys(points[0].parameters)) {
            const values = new Set(points.map(point => point.parameters[name]));
            if ([...values].every(value => Number(value) > 0) && values.size >= most) {
                best = name;
                most = values.size;
            }
        }
        return best;
    };

    const textOf = parameters => Object.entries(parameters).map(([name, value]) => `${name}=${value}`).join(" ");

    const points = comparison.points.map((point, index) => ({
        ...point,
        index,
        href: "#point-" + index,
        names: textOf(point.parameters),
        mark: page.verdictOf(point),
        middle: point.ratio[1],
        values: pairs[index],
    }));

    const functions = new Map();
    for (const point of points) {
        if (!functions.has(point.function)) {
            functions.set(point.function, {name: point.function, points: []});
        }
        point.family = functions.get(point.function);
        point.family.points.push(point);
    }
    for (const family of functions.values()) {
        family.axis = axisOf(family.points);
        family.points.forEach((point, i) => {
            const others = {...point.parameters};
            delete others[family.axis];
            point.along = family.axis === null ? i + 1 : Number(point.parameters[family.axis]);
            point.rest = family.axis === null ? "" : textOf(others);
        });
    }

    /// Groups of points and of functions, the worst first.
    const badness = {crash: 0, slower: 1, unsure: 2, same: 3, faster: 4};
    /// Which of a function's points speaks for it: what is known to differ goes before what is not.
    const weight = {crash: 0, slower: 1, faster: 2, unsure: 3, same: 4};
    /// How far a point goes into the direction of its verdict at least; where it has none, at most.
    const strength = point => {
        const [low, , high] = point.ratio;
        return point.verdict === "slower" ? low : point.verdict === "faster" ? 1 / high : high === null ? Infinity : high;
    };
    const by = order => (one, other) => order[one.mark.key] - order[other.mark.key]
        || (strength(other) === strength(one) ? 0 : strength(other) - strength(one));

    /// Why it cannot be told, or what became of the point; empty where there is nothing to say.
    page.whyOf = point => point.reason !== "crash" ? point.reason || "" : ["old", "new"]
        .filter(side => point.fate[side].death).map(side => `${side}: ${point.fate[side].death}`).join(", ");

    page.comparison = {
        title: run.title,
        sentence: run.sentence,
        csv: run.csv,
        document: comparison,
        course,
        points,
        functions,
        margin: comparison.margin,
        summary: comparison.summary,
        worst: [...points].sort(by(badness)),
        /// Of each function the point that speaks for it, worst first.
        speakers: [...functions.values()].map(family => [...family.points].sort(by(weight))[0]).sort(by(badness)),
        functionsThatAre: key => [...functions.values()].filter(
            family => family.points.some(point => point.mark.key === key)).length,
        /// Clocks of one unit of the table.
        older: point => point.old === null ? null : point.old / point.divisor,
        newer: point => point.new === null ? null : point.new / point.divisor,
    };

    /// The greatest change in percent that a small drawing of an interval shows.
    const most = 1.15 * points.filter(point => point.verdict !== "unsure").flatMap(point => [point.ratio[0], point.ratio[2]])
        .reduce((known, ratio) => Math.max(known, Math.min(Math.abs(100 * (ratio - 1)), 300)), 300 * comparison.margin);

    /// An interval as a small drawing, on a scale that all of a page share: even up to the margin, logarithmic
    /// beyond.
    page.intervalDrawing = (point, width = 120) => {
        const height = 16;
        const margin = 100 * comparison.margin;
        const place = ratio => {
            const percent = Math.max(-most, Math.min(most, 100 * (ratio - 1)));
            return width / 2 * (1 + Math.asinh(percent / margin) / Math.asinh(most / margin));
        };
        const [low, middle, high] = point.ratio;
        const from = low === null ? 0 : place(low);
        const to = high === null ? width : place(high);
        const line = (x1, y1, x2, y2, kind) => page.el("svg:line", {x1, y1, x2, y2, class: kind});
        const begin = place(1 / (1 + comparison.margin));
        return page.el("svg:svg", {class: "interval " + point.mark.key, width, height, viewBox: `0 0 ${width} ${height}`,
            "aria-hidden": "true"},
            page.el("svg:rect", {class: "margin", x: begin, y: 0, width: place(1 + comparison.margin) - begin, height}),
            line(width / 2, 0, width / 2, height, "none"),
            low === null && high === null ? null : line(from, height / 2, Math.max(to, from + 2), height / 2, "range"),
            middle === null ? null : page.el("svg:circle", {cx: place(middle), cy: height / 2, r: 3.2}));
    };
})();
