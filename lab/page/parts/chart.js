/// Charts by uPlot: in the colours of the style, as wide as their place, read by mouse, finger or keys.
/// Needs dom.js.
///
///     page.chart(host, {
///         label: "Clocks over length",           // for those who hear the page
///         height: 280,
///         keys: [["old", "Old build"], ...],     // a legend: class and text
///         build: () => ({x, series, scales, axes, ...}),   // options of uPlot and its data as `data`
///         describe: i => ["64 bytes", "12.5 clocks"],      // lines about the i-th x
///         pick: i => {},                         // it was chosen by click or Enter; may be left out
///     })
///
/// returns {redraw}, to be called when what build() gives has changed.

(() => {
    "use strict";

    /// What surely fits between the edges of a sheet, in pixels.
    const paperWidth = 620;
    const font = "12px system-ui, sans-serif";

    /// An axis in the style's colours; `more` is what differs.
    page.axis = more => ({
        stroke: page.colour("soft"),
        font,
        labelFont: font,
        labelSize: 20,
        labelGap: 0,
        gap: 6,
        size: 30,
        ticks: {show: false},
        filter: (plot, splits) => splits,
        grid: {stroke: page.colour("line"), width: 1},
        ...more,
    });

    /// Splits of a logarithmic axis: 1, 2, 5 of each decade, or even steps where few of these are in sight.
    page.logSplits = (low, high) => {
        const splits = [];
        for (let decade = 10 ** Math.floor(Math.log10(low)); decade <= high; decade *= 10) {
            splits.push(...[1, 2, 5].map(step => step * decade).filter(value => value >= low && value <= high));
        }
        if (splits.length >= 3) {
            return splits.length > 9 ? splits.filter(value => /^[0.]*1/.test(value.toPrecision(1))) : splits;
        }
        const step = 10 ** Math.floor(Math.log10(high - low));
        const wide = (high - low) / step < 2.5 ? step / 2 : step;
        const even = [];
        for (let i = Math.ceil(low / wide); i * wide <= high; ++i) {
            even.push(i * wide);
        }
        return even;
    };

    /// A logarithmic scale with some room at both ends.
    page.logScale = (log, room = 1.15) => ({
        distr: 3,
        log,
        range: (plot, low, high) => low > 0 ? [low / room, high * room] : [1, 10],
    });

    /// A scale and an axis of changes in percent: even up to the margin (in percent too), logarithmic beyond.
    page.changeScale = (margin, low, high) => ({
        distr: 4,
        asinh: margin,
        range: () => [Math.min(low, -2 * margin) * 1.15, Math.max(high, 2 * margin) * 1.15],
    });
    const changeSplits = (plot, axis, low, high) => {
        const place = value => Math.asinh(value / plot.scales.y.asinh);
        const apart = 18 * (place(high) - place(low)) / plot.height;
        const splits = [0];
        // outward from none, leaving out what would stand too close
        for (const sign of [1, -1]) {
            let last = 0;
            for (const step of [0.5, 1, 2, 5, 10, 20, 50, 100, 200, 500, 1000, 2000, 5000, 10000]) {
                if (step <= (sign > 0 ? high : -low) && place(step) - place(last) >= apart) {
                    splits.push(sign * step);
                    last = step;
                }
            }
        }
        return splits.sort((a, b) => a - b);
    };
    page.changeAxis = () => page.axis({size: 58, splits: changeSplits, values: (plot, splits) => splits.map(
        split => (split > 0 ? "+" : split < 0 ? "\u2212" : "") + Math.abs(split) + "%")});

    /// Fills between two values of y over the whole width, for a hook of uPlot.
    page.band = (plot, low, high, colour) => {
        const {ctx, bbox} = plot;
        const top = Math.max(plot.valToPos(high, "y", true), bbox.top);
        const bottom = Math.min(plot.valToPos(low, "y", true), bbox.top + bbox.height);
        ctx.fillStyle = colour;
        ctx.fillRect(bbox.left, top, bbox.width, Math.max(bottom - top, devicePixelRatio));
    };

    const legend = keys => page.el("ul", {class: "legend"},
        ...keys.map(([kind, text]) => page.el("li", {},
            page.el("span", {class: "key " + kind, "aria-hidden": "true"}), text)));

    page.chart = (host, spec) => {
        const place = page.el("div", {class: "chart-place"});
        const tip = page.el("div", {class: "tip", hidden: true});
        const said = page.el("output", {class: "unseen"});
        const frame = page.el("div", {
            class: "chart", role: "group", tabindex: "0",
            "aria-label": spec.label + ". Left and right read it point by point"
                + (spec.pick ? ", Enter opens one." : "."),
        }, place, tip, said);
        host.append(spec.keys ? legend(spec.keys) : "", frame);
        let plot = null;
        let at = -1;
        let byKeys = false;

        const show = index => {
            at = index === null || index === undefined ? -1 : index;
            const lines = at < 0 ? null : spec.describe(at);
            tip.hidden = !lines;
            if (lines) {
                tip.replaceChildren(...lines.map(line => page.el("div", {}, line)));
                const x = plot.over.offsetLeft + plot.valToPos(plot.data[0][at], "x");
                const most = frame.clientWidth - tip.offsetWidth - 4;
                tip.style.left = Math.max(4, Math.min(x + 14, most)) + "px";
                said.textContent = byKeys ? lines.join(", ") : "";
            }
        };
        const moveTo = index => {
            byKeys = true;
            plot.setCursor({left: plot.valToPos(plot.data[0][index], "x"), top: 10});
            show(index);
        };
        const keys = {ArrowRight: 1, ArrowLeft: -1, PageDown: 10, PageUp: -10, Home: -Infinity, End: Infinity};

        frame.addEventListener("keydown", event => {
            if (!plot || event.ctrlKey || event.altKey || event.metaKey) {
                return;
            }
            const last = plot.data[0].length - 1;
            if (event.key in keys && last >= 0) {
                moveTo(Math.max(0, Math.min(last, at + keys[event.key])));
                event.preventDefault();
            } else if (event.key === "Enter" && spec.pick && at >= 0) {
                spec.pick(at);
            }
        });
        frame.addEventListener("blur", () => show(null));
        place.addEventListener("pointermove", () => byKeys = false);
        place.addEventListener("click", event => {
            if (spec.pick && at >= 0 && plot.over.contains(event.target)) {
                spec.pick(at);
            }
        });

        const draw = (onPaper = false) => {
            if (plot) {
                plot.destroy();
            }
            at = -1;
            tip.hidden = true;
            const {data, ...options} = spec.build();
            plot = new uPlot({
                width: onPaper ? Math.min(place.clientWidth, paperWidth) : place.clientWidth,
                height: spec.height,
                legend: {show: false},
                padding: [12, 12, 0, 0],
                ...options,
                cursor: {drag: {x: false, y: false}, y: false, points: {show: false}, ...options.cursor},
                hooks: {...options.hooks, setCursor: [own => own === plot && !byKeys && show(own.cursor.idx)]},
            }, data, place);
        };
        const isDrawn = () => plot !== null;
        page.whenSeen(frame, () => {
            draw();
            new ResizeObserver(() => place.clientWidth > 0 && place.clientWidth !== plot.width
                && plot.setSize({width: place.clientWidth, height: spec.height})).observe(place);
        });
        page.onLooks(onPaper => isDrawn() && draw(onPaper));
        return {redraw: () => isDrawn() && draw()};
    };
})();
