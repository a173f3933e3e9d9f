#include "compare/survey.h"

#include "compare/pairstart.h"

namespace lab {

namespace {

/// Surveys that are lost before what they listed has to do.
constexpr int ChancesToSurvey = 3;
/// The survey counts as a pair, for its random numbers alone.
constexpr int SurveyPair = 0;

Survey surveyOf(Started& started, StoredSide& side) {
    Instrument& instrument = *started.instrument;
    side.library = instrument.hello().library;
    for (std::size_t object = 0; object < side.objects.size(); ++object) {
        side.objects[object].mapped = started.mapped[object];
    }
    Survey survey{Route(lab::survey(instrument)), "", ""};
    if (instrument.loss()) {
        survey.lostIn = instrument.lastFunction();
        survey.loss = instrument.loss()->what;
    }
    instrument.quit();
    return survey;
}

}  // namespace

std::string Survey::lossText(const std::string& done) const {
    return " does not get past " + (lostIn.empty() ? "its start" : lostIn) + " (" + loss +
           "): nothing after it is " + done;
}

std::vector<Survey> surveySides(std::span<StoredSide> sides, int mhz, const RunSettings& settings) {
    std::vector<Survey> surveys;
    for (int chance = 1; chance <= ChancesToSurvey; ++chance) {
        std::vector<Started> started = startSurely(sides, mhz, settings, SurveyPair, chance * ChancesToStart);
        surveys.clear();
        bool lost = false;
        for (std::size_t i = 0; i < sides.size(); ++i) {
            surveys.push_back(surveyOf(started[i], sides[i]));
            lost = lost || !surveys.back().loss.empty();
        }
        if (!lost) {
            break;
        }
    }
    return surveys;
}

}  // namespace lab
