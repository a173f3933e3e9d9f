/// A map: rows of cells that each lead somewhere, in groups with heads of columns of their own. One stop of the tab
/// key; arrows move from cell to cell.
/// Needs dom.js.
///
///     page.grid(host, {
///         label: "Functions by parameter",
///         groups: [{
///             caption: "by VectorLength",
///             columns: ["8", "64"],                      // heads, texts
///             rows: [{head: "zylsFindC_8u", cells: [cell, null, ...]}],
///         }],
///     })
///
/// A cell is {text, label, href, kind, level}: `text` stands in it, `label` is what it says in full, `kind` and
/// `level` choose its colour (classes of the style). null: there is none. A row of {span: text} is a heading of
/// the rows below it, which have `sub`.

(() => {
    "use strict";

    const cellNode = cell => cell === null ? page.el("td", {}) : page.el("td", {}, page.el("a", {
        href: cell.href,
        class: "cell " + cell.kind + (cell.level ? " level" + cell.level : ""),
        tabindex: "-1",
        "aria-label": cell.label,
        title: cell.label,
    }, cell.text));

    const spanNode = (text, columns) => page.el("tr", {class: "span"},
        page.el("th", {scope: "rowgroup", colspan: columns + 1}, text));

    const rowNode = row => page.el("tr", {class: row.sub && "sub"},
        page.el("th", {scope: "row"}, row.head),
        ...row.cells.map(cellNode));

    const groupNode = (group, label) => page.el("div", {class: "grid-scroll"},
        page.el("table", {class: "grid", role: "grid", "aria-label": label + ", " + group.caption},
            page.el("caption", {}, group.caption),
            page.el("thead", {}, page.el("tr", {}, page.el("th", {scope: "col"}, page.el("span", {class: "unseen"}, "function")),
                ...group.columns.map(column => page.el("th", {scope: "col"}, column)))),
            page.el("tbody", {}, ...group.rows.map(
                row => row.span ? spanNode(row.span, group.columns.length) : rowNode(row)))));

    /// The next cell from (row, column) in the direction given, over empty places and from group to group.
    const nextCell = (rows, row, column, down, right) => {
        for (let r = row + down, c = column + right; r >= 0 && r < rows.length; r += down, c += right) {
            const cells = rows[r].cells;
            if (right && (c < 1 || c >= cells.length)) {
                return null;
            }
            // a shorter row of another group: its last cell
            const link = cells[Math.min(c, cells.length - 1)].querySelector("a.cell");
            if (link) {
                return link;
            }
        }
        return null;
    };

    const steps = {ArrowUp: [-1, 0], ArrowDown: [1, 0], ArrowLeft: [0, -1], ArrowRight: [0, 1]};

    page.grid = (host, spec) => {
        const node = page.el("div", {class: "grids"}, ...spec.groups.map(group => groupNode(group, spec.label)));
        host.append(node);
        // what scrolls must be within reach of the keyboard
        const reachable = new ResizeObserver(entries => entries.forEach(({target}) =>
            target.scrollWidth > target.clientWidth ? target.setAttribute("tabindex", "0") : target.removeAttribute("tabindex")));
        node.querySelectorAll(".grid-scroll").forEach(group => reachable.observe(group));
        const rows = [...node.querySelectorAll("tbody tr")];
        let current = node.querySelector("a.cell");
        const take = link => {
            current.tabIndex = -1;
            current = link;
            current.tabIndex = 0;
        };
        if (current) {
            take(current);
        }
        node.addEventListener("focusin", event => event.target.matches("a.cell") && take(event.target));
        node.addEventListener("keydown", event => {
            const cell = event.target.closest("td");
            let next = null;
            if (cell && event.key in steps) {
                next = nextCell(rows, rows.indexOf(cell.parentNode), cell.cellIndex, ...steps[event.key]);
                event.preventDefault();
            } else if (cell && (event.key === "Home" || event.key === "End")) {
                next = [...cell.parentNode.querySelectorAll("a.cell")].at(event.key === "Home" ? 0 : -1);
                event.preventDefault();
            }
            if (next) {
                next.focus();
            }
        });
    };
})();
