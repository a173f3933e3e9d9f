/// What every page needs: elements, sections, numbers, downloads. The scripts of a page share one global, `page`;
/// each adds what it offers. Texts become text nodes and attributes only, never markup, so a name may hold anything.
const page = {};

(() => {
    "use strict";

    /// The value of a data block of the document.
    page.data = id => JSON.parse(document.getElementById(id).textContent);

    /// An element, or one of SVG for "svg:line". Properties: functions become listeners of their names ("click"),
    /// `style` takes an object (the page's policy forbids the attribute), true an empty attribute; null, false
    /// and undefined none. Children are nodes, texts, or null for nothing.
    page.el = (tag, properties = {}, ...children) => {
        const isSvg = tag.startsWith("svg:");
        const node = isSvg ? document.createElementNS("http://www.w3.org/2000/svg", tag.slice(4))
                           : document.createElement(tag);
        for (const [name, value] of Object.entries(properties)) {
            if (typeof value === "function") {
                node.addEventListener(name, value);
            } else if (name === "style") {
                Object.entries(value).forEach(([key, text]) => node.style.setProperty(key, text));
            } else if (value !== null && value !== undefined && value !== false) {
                node.setAttribute(name, value === true ? "" : value);
            }
        }
        node.append(...children.filter(child => child !== null && child !== undefined));
        return node;
    };

    /// A section of <main> with a heading and an entry in the navigation. What is handed on stands under the
    /// heading: nodes, or texts, which become paragraphs.
    page.section = (id, title, ...content) => {
        const heading = page.el("h2", {id: id + "-title", tabindex: "-1"}, title);
        const node = page.el("section", {id, "aria-labelledby": heading.id}, heading,
            ...content.map(one => typeof one === "string" ? page.el("p", {class: "intro"}, one) : one));
        document.getElementById("main").append(node);
        document.getElementById("nav").append(page.el("a", {href: "#" + id}, title));
        return node;
    };

    /// To a section, with the focus on its heading, so that reading and tabbing go on there.
    page.goTo = id => {
        document.getElementById(id).scrollIntoView();
        document.getElementById(id + "-title").focus({preventScroll: true});
    };

    const isNumber = value => typeof value === "number" && Number.isFinite(value);

    /// "+5.66%" for a ratio of 1.0566; "?" for none.
    page.change = ratio => {
        if (!isNumber(ratio)) {
            return "?";
        }
        const percent = 100 * (ratio - 1);
        const digits = Math.abs(percent) < 100 ? 2 : 0;
        const text = Math.abs(percent).toFixed(digits);
        return (Number(text) === 0 ? "" : percent > 0 ? "+" : "\u2212") + text + "%";
    };

    /// The interval of a ratio [low, middle, high]; an end that is null is not known.
    page.interval = ratio => ratio[0] === null && ratio[2] === null
        ? "not known" : page.change(ratio[0]) + " to " + page.change(ratio[2]);

    /// A figure with so many digits that count, thousands apart; "?" for none.
    page.figure = (value, digits = 4) => {
        if (!isNumber(value)) {
            return "?";
        }
        const decimals = value === 0 ? 0 : digits - 1 - Math.floor(Math.log10(Math.abs(value)));
        return value.toLocaleString("en", {
            minimumFractionDigits: Math.min(Math.max(decimals, 0), 6),
            maximumFractionDigits: Math.min(Math.max(decimals, 0), 6),
        });
    };

    /// "1 function", "2 functions", "no function".
    page.count = (number, what) => (number === 0 ? "no" : number.toLocaleString("en")) + " " + what
        + (number > 1 ? "s" : "");

    /// Hands a text over as a file. Nothing leaves the page: the browser itself holds what is downloaded.
    page.download = (name, type, text) => {
        const url = URL.createObjectURL(new Blob([text], {type}));
        page.el("a", {href: url, download: name}).click();
        setTimeout(() => URL.revokeObjectURL(url), 60000);
    };

    /// A colour of the style by its name, as it is just now: "ink", "slower", ...
    page.colour = name => getComputedStyle(document.documentElement).getPropertyValue("--" + name).trim();

    // paper is light, whatever the screen is
    const printing = is => document.documentElement.classList.toggle("printing", is);
    addEventListener("beforeprint", () => printing(true));
    addEventListener("afterprint", () => printing(false));

    /// Calls back when the looks change: light to dark and back, onto paper (true) and back.
    page.onLooks = redraw => {
        matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => redraw(false));
        addEventListener("beforeprint", () => redraw(true));
        addEventListener("afterprint", () => redraw(false));
    };

    /// Calls back once, when the node is about to be seen or printed: what stands far below costs no time before.
    page.whenSeen = (node, draw) => {
        let drawn = false;
        const once = () => {
            if (!drawn) {
                drawn = true;
                watcher.disconnect();
                draw();
            }
        };
        const watcher = new IntersectionObserver(entries => entries.some(entry => entry.isIntersecting) && once(),
            {rootMargin: "400px"});
        watcher.observe(node);
        addEventListener("beforeprint", once);
    };
})();
