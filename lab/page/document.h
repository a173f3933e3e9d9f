#pragma once

/// A page: one HTML document that needs no other file and can reach for none. What it shows is up to its
/// data, its scripts and its body; this puts them together.
///
///     Page page = pageOfParts("Run 7", "Nothing became slower.");  // with all that pages share
///     page.data.push_back({"run", json});       // page.data("run") in a script
///     page.scripts.push_back(part("fleet.js"));  // draws: page.section("map", "Map") makes a section of
///     <main> writeWhole(path, document(page));
///
/// The shared scripts (page/parts/) tell at their heads what they offer: dom.js elements, numbers and
/// downloads, verdict.js the words, signs and colours of verdicts, chart.js charts, grid.js a map of cells,
/// table.js a table to sort and filter.

#include <string>
#include <string_view>
#include <vector>

namespace lab {

struct PageData {
    std::string id;    ///< letters, digits and "-"; of no section
    std::string json;  ///< one JSON value; whatever its texts hold, it stays data
};

struct Page {
    std::string title;  ///< any text
    /// HTML as it is to stand there. What was read from anywhere goes in through escaped() only.
    std::string body;
    std::vector<std::string_view> styles;   ///< CSS
    std::vector<std::string_view> scripts;  ///< run in this order when body and data are there
    std::vector<PageData> data;
};

/// A page with the styles and scripts that all pages share and an empty frame: skip link, <nav id="nav">,
/// <main id="main">. The summary, any text, is for readers without scripts.
Page pageOfParts(std::string title, std::string_view summary);

/// The document, in UTF-8. Its Content-Security-Policy lets just these styles and scripts run and nothing be
/// loaded from anywhere: no attribute of the body may hold style or script.
std::string document(const Page& page);

/// A text as it can stand in HTML, between tags and in a quoted attribute.
std::string escaped(std::string_view text);

}  // namespace lab
