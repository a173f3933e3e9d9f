/// A table that sorts by its heads and grows by buttons, so that thousands of rows cost nothing before they are
/// asked for.
/// Needs dom.js.
///
///     const table = page.table(host, {
///         caption: "All points",
///         columns: [{title: "Change", kind: "number", value: row => row.change, show: row => node or text}],
///         rows: [...],
///         sort: 0,                 // column it is sorted by at first; null: rows stay as they come
///     });
///     table.filter(row => true);   // shows only these
///
/// `value` sorts: numbers by size, texts by language; null and NaN stand last whatever the direction. `down`: true
/// of a column sorts from the greatest at first. `kind` is a class of its cells.

(() => {
    "use strict";

    const step = 50;
    const collator = new Intl.Collator("en", {numeric: true});

    const compare = (one, other, sign) => {
        const isNone = value => value === null || value === undefined || Number.isNaN(value);
        if (isNone(one) || isNone(other)) {
            return isNone(one) - isNone(other);
        }
        return sign * (typeof one === "number" ? one - other : collator.compare(one, other));
    };

    page.table = (host, spec) => {
        let sorted = [];
        let wanted = () => true;
        let column = spec.sort === undefined ? null : spec.sort;
        let down = column !== null && spec.columns[column].down === true;
        let shown = step;

        const heads = spec.columns.map((one, i) => page.el("th", {scope: "col", class: one.kind},
            page.el("button", {type: "button", click: () => sortBy(i)}, one.title,
                page.el("span", {class: "arrow", "aria-hidden": "true"}))));
        const body = page.el("tbody");
        const said = page.el("p", {class: "count", role: "status"});
        const more = page.el("button", {type: "button", click: () => grow(4 * step)}, `Show ${4 * step} more`);
        const all = page.el("button", {type: "button", click: () => grow(Infinity)}, "Show all");
        const buttons = page.el("div", {class: "buttons"}, more, all);
        host.append(said, page.el("div", {class: "table-scroll", role: "region", tabindex: "0", "aria-label": spec.caption},
            page.el("table", {class: "table"}, page.el("caption", {class: "unseen"}, spec.caption),
                page.el("thead", {}, page.el("tr", {}, ...heads)), body)), buttons);

        const rowNode = row => page.el("tr", {},
            ...spec.columns.map(one => page.el("td", {class: one.kind}, one.show(row))));

        const fill = from => {
            body.append(...sorted.slice(from, shown).map(rowNode));
            const count = Math.min(shown, sorted.length);
            said.textContent = sorted.length === 0 ? "No row passes the filter." :
                count < sorted.length ? `Rows 1 to ${count} of ${sorted.length}` : page.count(sorted.length, "row");
            buttons.hidden = count >= sorted.length;
        };
        const grow = by => {
            const from = shown;
            shown += by;
            fill(from);
        };
        const draw = () => {
            const rows = spec.rows.filter(row => wanted(row));
            if (column !== null) {
                const {value} = spec.columns[column];
                const keyed = rows.map(row => ({row, key: value(row)}));
                sorted = keyed.sort((a, b) => compare(a.key, b.key, down ? -1 : 1)).map(({row}) => row);
            } else {
                sorted = rows;
            }
            shown = step;
            heads.forEach((head, i) => i === column
                ? head.setAttribute("aria-sort", down ? "descending" : "ascending") : head.removeAttribute("aria-sort"));
            body.replaceChildren();
            fill(0);
        };
        const sortBy = i => {
            down = i === column ? !down : spec.columns[i].down === true;
            column = i;
            draw();
        };
        draw();
        return {
            filter: test => {
                wanted = test;
                draw();
            },
        };
    };
})();
