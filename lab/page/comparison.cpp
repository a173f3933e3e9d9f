#include "page/comparison.h"

#include <nlohmann/json.hpp>

#include "page/document.h"
#include "page/parts.h"
#include "show/csv.h"
#include "show/figures.h"
#include "show/json.h"
#include "show/table.h"

namespace lab {

namespace {

using Json = nlohmann::ordered_json;

/// To so many decimals, which keeps the document small; null where there is none.
Json figure(double value, int decimals) {
    const auto known = rounded(value, decimals);
    return known ? Json(*known) : Json(nullptr);
}

Json pairsJson(const Course& course) {
    Json points = Json::array();
    for (const auto& values : course.points) {
        Json point = Json::array();
        for (const PairValue& value : values) {
            point.push_back(Json::array({value.pair, figure(value.value, 5), value.fresh ? 1 : 0}));
        }
        points.push_back(std::move(point));
    }
    return points;
}

Json courseJson(const Course& course) {
    Json slices = Json::array();
    Json busy = Json::array();
    for (std::size_t i = 0; i < course.slices.size(); ++i) {
        const Slice& slice = course.slices[i];
        slices.push_back(slice.slowdown ? figure(*slice.slowdown, 3) : Json(nullptr));
        if (slice.busy) {
            busy.push_back(i);
        }
    }
    Json pairs = Json::array();
    for (const PairState& pair : course.pairs) {
        pairs.push_back(Json::array({pair.pair, figure(pair.seconds, 3), figure(pair.busyness, 3),
                                     figure(pair.steal, 4), figure(pair.load, 2)}));
    }
    return {{"step", figure(course.step, 6)}, {"slices", slices}, {"busy", busy}, {"pairs", pairs}};
}

}  // namespace

std::string comparisonPage(const std::string& title, const Report& report, const Course& course) {
    Page page = pageOfParts("Comparison " + title, sentence(report));
    page.styles.push_back(part("comparison.css"));
    const Json data{{"title", title},
                    {"sentence", sentence(report)},
                    {"comparison", Json::parse(json(report, exitStatus(report, false)))},
                    {"csv", csv(report)},
                    {"pairs", pairsJson(course)},
                    {"course", courseJson(course)}};
    page.data.push_back({"comparison", data.dump(-1, ' ', false, Json::error_handler_t::replace)});
    for (const char* script : {"comparison_model.js", "comparison_answer.js", "comparison_point.js",
                               "comparison_views.js", "comparison.js"}) {
        page.scripts.push_back(part(script));
    }
    return document(page);
}

}  // namespace lab
