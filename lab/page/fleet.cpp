#include "page/fleet.h"

#include <fmt/core.h>

#include <nlohmann/json.hpp>

#include "page/document.h"
#include "page/parts.h"

namespace lab {

namespace {

using Json = nlohmann::ordered_json;

Json functionsJson(const FleetReport& fleet) {
    Json functions = Json::array();
    for (const FleetLine& line : fleetLines(fleet, false)) {
        Json points = Json::array();
        for (std::size_t kind = 0; kind < line.ofKinds.size(); ++kind) {
            const Point* point = line.ofKinds[kind].point;
            points.push_back(point == nullptr ? Json(nullptr)
                                              : Json(point - fleet.kinds[kind].report.points.data()));
        }
        functions.push_back({{"name", line.name}, {"points", points}});
    }
    return functions;
}

}  // namespace

std::string fleetPage(const std::string& title, const FleetReport& fleet) {
    Page page = pageOfParts("Fleet " + title, fmt::format("{} kinds of machines", fleet.kinds.size()));
    page.styles.push_back(part("comparison.css"));
    const Json data{{"title", title},
                    {"fleet", Json::parse(fleetJson(fleet, false))},
                    {"functions", functionsJson(fleet)}};
    page.data.push_back({"run", data.dump(-1, ' ', false, Json::error_handler_t::replace)});
    page.scripts.push_back(part("fleet.js"));
    return document(page);
}

}  // namespace lab
