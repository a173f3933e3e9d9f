#include "parameter/mrdefault.h"

#include "parameter/mrmemory.h"

namespace {

/// An empty item would read as 0 without a word; shift and alignment refuse it.
void refuseBlank(const mrString& name, mrString text) {
    mrString trimmed = text;
    trimmed.trim();
    if (trimmed.empty()) {
        mrRefuse("Invalid value of ", name + " = " + text);
    }
}

}  // namespace

int DefaultShift::validItem(mrString text) {
    refuseBlank(m_name, text);
    return mrDefault::validItem(text) & -MR_ALIGN_MAX;
}

int DefaultAlign::validItem(mrString text) {
    refuseBlank(m_name, text);
    return mrDefault::validItem(text) % MR_ALIGN_MAX;
}
