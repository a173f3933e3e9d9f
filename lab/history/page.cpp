#include "history/page.h"

#include "history/historytable.h"
#include "page/document.h"
#include "page/parts.h"

namespace lab {

std::string historyPage(const std::string& title, const Overview& overview) {
    Page page = pageOfParts("History " + title, historySentence(overview));
    page.styles.push_back(part("history.css"));
    page.data.push_back({"history", historyJson(overview)});
    page.scripts.push_back(part("history.js"));
    page.scripts.push_back(part("history_level.js"));
    return document(page);
}

}  // namespace lab
