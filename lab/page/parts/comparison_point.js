/// One point in full: what is said of it, its pairs, and the clocks of its function over the length.
/// Needs comparison_model.js, chart.js.

(() => {
    "use strict";

    const {el} = page;
    const {points, functions, margin} = page.comparison;
    const percent = ratio => 100 * (ratio - 1);
    let current = page.comparison.worst[0];

    // what is said of it

    const fact = (name, value) => value === null ? null : el("div", {}, el("dt", {}, name), el("dd", {}, value));

    const fateText = fate => [fate.death, fate.status === 0 ? null : `status ${fate.status}`].filter(text => text).join(", ");

    const facts = point => {
        const unit = `clocks/${point.unit}`;
        const clocks = (value, call) => value === null ? "not measured" : el("span", {class: "number"},
            page.figure(value, 3) + " " + unit, el("span", {class: "note soft small"}, page.figure(call) + " a call"));
        return el("dl", {class: "facts"},
            fact("Change", el("strong", {class: "change number " + point.mark.key}, page.change(point.middle))),
            fact("Interval", el("span", {class: "number"}, page.interval(point.ratio))),
            fact("Old", clocks(page.comparison.older(point), point.old)),
            fact("New", clocks(page.comparison.newer(point), point.new)),
            fact("Rests on", page.count(point.pairs, "pair")),
            fact("Would have shown", point.smallest === null ? "not known" : page.change(point.smallest)),
            fact("Old build", fateText(point.fate.old) || null),
            fact("New build", fateText(point.fate.new) || null),
            fact("Marks", point.marks.length === 0 ? null : point.marks.join(", ")));
    };

    // its pairs

    const pairsChart = host => page.chart(host, {
        label: "Pairs of the point",
        height: 260,
        keys: [["dot", "pair"], ["ring", "fresh pair, to confirm"], ["range", "interval"], ["margin", "margin"]],
        build: () => {
            const values = current.values.map(([, value]) => percent(Math.exp(value)));
            const fresh = current.values.map(([, , isFresh]) => isFresh === 1);
            const of = kind => values.map((value, i) => fresh[i] === kind ? value : null);
            const [low, middle, high] = current.ratio.map(ratio => ratio === null ? null : percent(ratio));
            const known = [...values, low, high].filter(value => value !== null);
            const line = (plot, value, colour, dash) => {
                const {ctx, bbox} = plot;
                const y = plot.valToPos(value, "y", true);
                ctx.save();
                ctx.strokeStyle = colour;
                ctx.lineWidth = devicePixelRatio;
                ctx.setLineDash(dash.map(part => part * devicePixelRatio));
                ctx.beginPath();
                ctx.moveTo(bbox.left, y);
                ctx.lineTo(bbox.left + bbox.width, y);
                ctx.stroke();
                ctx.restore();
            };
            const dots = (fill, stroke, width) => ({paths: () => null, points: {show: true, size: 7, fill, stroke, width}});
            return {
                data: [values.map((value, i) => i + 1), of(false), of(true)],
                series: [{}, dots(page.colour("ink"), page.colour("ink"), 0), dots(page.colour("raised"), page.colour("accent"), 2)],
                scales: {
                    x: {time: false, range: () => [0, Math.max(values.length, 8) + 1]},
                    y: page.changeScale(100 * margin, Math.min(...known), Math.max(...known)),
                },
                axes: [
                    page.axis({label: "pairs in the order of their start", grid: {show: false}, incrs: [1, 2, 5, 10, 20, 50]}),
                    page.changeAxis(),
                ],
                hooks: {
                    drawClear: [plot => {
                        page.band(plot, percent(1 / (1 + margin)), 100 * margin, page.colour("margin"));
                        if (low !== null && high !== null) {
                            page.band(plot, low, high, page.colour("range"));
                        }
                    }],
                    drawAxes: [plot => {
                        line(plot, 0, page.colour("edge"), []);
                        if (middle !== null) {
                            line(plot, middle, page.colour("ink"), [4, 3]);
                        }
                    }],
                },
            };
        },
        describe: i => [`pair ${current.values[i][0]}${current.values[i][2] ? ", fresh" : ""}`,
            page.change(Math.exp(current.values[i][1]))],
    });

    // the clocks of its function

    const siblings = () => current.family.points.filter(point => point.rest === current.rest)
        .sort((a, b) => a.along - b.along);

    const clocksChart = host => page.chart(host, {
        label: "Clocks over length",
        height: 260,
        keys: [["dashed", "○ old"], ["line", "● new"]],
        build: () => {
            const row = siblings();
            const isCounted = current.family.axis === null;
            const {older, newer} = page.comparison;
            const positive = value => value > 0 ? value : null;
            const old = {stroke: page.colour("soft"), width: 1.5, dash: [6, 4],
                points: {show: true, size: 8, width: 1.5, fill: page.colour("raised"), stroke: page.colour("soft")}};
            const fresh = {stroke: page.colour("accent"), width: 2,
                points: {show: true, size: 6, width: 0, fill: page.colour("accent")}};
            return {
                data: [row.map(point => point.along), row.map(point => positive(older(point))), row.map(point => positive(newer(point)))],
                series: [{}, old, fresh],
                scales: {
                    x: isCounted ? {time: false, range: () => [0.5, row.length + 0.5]} : {time: false, ...page.logScale(2, 1.3)},
                    y: page.logScale(10),
                },
                axes: [
                    page.axis({label: isCounted ? "cases" : current.family.axis, grid: {show: false}, splits: () => row.map(point => point.along),
                        values: (plot, splits) => splits.map(
                            (split, i) => i % Math.ceil(splits.length / 7) === 0 ? split.toLocaleString("en", {useGrouping: false}) : "")}),
                    page.axis({label: "clocks/" + current.unit, size: 52, splits: (plot, axis, from, to) => page.logSplits(from, to),
                        values: (plot, splits) => splits.map(split => String(Number(split.toPrecision(3))))}),
                ],
                hooks: {
                    drawClear: [plot => {
                        const {ctx, bbox} = plot;
                        const x = plot.valToPos(current.along, "x", true);
                        ctx.fillStyle = page.colour("margin");
                        ctx.fillRect(x - 7 * devicePixelRatio, bbox.top, 14 * devicePixelRatio, bbox.height);
                    }],
                },
            };
        },
        describe: i => {
            const point = siblings()[i];
            return [point.names, `old ${page.figure(page.comparison.older(point), 3)}, new `
                + `${page.figure(page.comparison.newer(point), 3)} clocks/${point.unit}`, page.saying(point)];
        },
        pick: i => location.hash = siblings()[i].href,
    });

    // choosing

    page.showPointSection = () => {
        const section = page.section("point", "A point in full");
        const ofFunction = el("select", {id: "function", change: () => location.hash = speaker(ofFunction.value).href},
            ...[...functions.keys()].sort().map(name => el("option", {value: name}, name)));
        const ofPoint = el("select", {id: "parameters", change: () => location.hash = "#point-" + ofPoint.value});
        const speaker = name => page.comparison.speakers.find(point => point.function === name);
        const step = by => {
            const {worst} = page.comparison;
            location.hash = worst[(worst.indexOf(current) + by + worst.length) % worst.length].href;
        };
        const title = el("h3", {class: "point-title code", id: "point-name", tabindex: "-1"});
        const said = el("div", {class: "point-said", "aria-live": "polite"});
        const pairs = el("div", {class: "card"}, el("h3", {}, "Its pairs"),
            el("p", {class: "small soft"}, "A dot is what one pair of processes said. Steady dots far apart are the doing of layout."));
        const clocks = el("div", {class: "card"}, el("h3", {}, "Clocks over length, both builds"),
            el("p", {class: "small soft"}, "Of the points of this function with the same other parameters; both axes are logarithmic."));
        section.append(
            el("div", {class: "choosing screen"},
                el("label", {}, "Function ", ofFunction), el("label", {}, "Parameters ", ofPoint),
                el("span", {class: "steps"}, el("button", {type: "button", click: () => step(-1)}, "Previous"),
                    el("button", {type: "button", click: () => step(1)}, "Next"))),
            el("div", {class: "card point-card"}, title, said), el("div", {class: "pair-of-cards"}, pairs, clocks));
        const charts = [pairsChart(pairs), clocksChart(clocks)];

        /// Shows this point and, unless the page only opens, goes there.
        page.showPoint = (index, goes = true) => {
            const point = points[index];
            document.querySelectorAll("[aria-current]").forEach(node => node.removeAttribute("aria-current"));
            document.querySelectorAll(`a.cell[href="${point.href}"]`).forEach(node => node.setAttribute("aria-current", "true"));
            if (point.family !== current.family || ofPoint.options.length === 0) {
                ofPoint.replaceChildren(...point.family.points.map(one => el("option", {value: one.index},
                    `${one.mark.sign} ${one.names || "no parameters"}`)));
            }
            current = point;
            ofFunction.value = point.function;
            ofPoint.value = point.index;
            title.replaceChildren(point.function, " ", el("span", {class: "soft"}, point.names));
            said.replaceChildren(el("p", {}, page.badge(point.mark), point.reason ? el("span", {class: "soft"}, ": " + point.reason) : "",
                point.reason ? el("span", {class: "why small soft"}, page.reasons[point.reason] || "") : null), facts(point));
            charts.forEach(chart => chart.redraw());
            if (goes) {
                document.getElementById("point").scrollIntoView();
                title.focus({preventScroll: true});
            }
        };
    };
})();
