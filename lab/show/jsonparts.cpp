#include "show/jsonparts.h"

namespace lab {

Json toJson(const Build& build) {
    Json objects = Json::array();
    for (const SharedObject& object : build.objects) {
        objects.push_back({{"path", object.path}, {"sha256", object.sha256}, {"buildId", object.buildId}});
    }
    return {{"name", build.name},
            {"keys", build.keys},
            {"library", build.library},
            {"mask", build.mask},
            {"objects", objects}};
}

Json toJson(const Machine& machine) {
    return {{"processor", machine.processor},
            {"kernel", machine.kernel},
            {"hypervisor", text(machine.hypervisor)},
            {"governor", text(machine.governor)},
            {"bits", machine.bits},
            {"mhz", machine.mhz},
            {"core", machine.core},
            {"siblings", machine.siblings},
            {"load", figure(machine.load, 2)},
            {"steal", figure(machine.steal, 4)}};
}

Json toJson(const Fate& fate) { return {{"status", fate.status}, {"death", text(fate.death)}}; }

Json objectOf(const std::vector<std::pair<std::string, std::string>>& parameters) {
    Json object = Json::object();
    for (const auto& [name, value] : parameters) {
        object[name] = value;
    }
    return object;
}

std::string documentOf(const Json& document) {
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace lab
