#include "parameter/mrmapiterator.h"

mrString mrEnumIterator_NCS<int>::validString() const {
    if (!m_validationOn) {
        return "";
    }
    return mrJoined(m_validValues, "|", [this](int value) { return valueToString(value); });
}

void mrEnumIterator_NCS<int>::add(int value) {
    mrIterator_NSC::add(value);
    if (m_validationOn) {
        addValidation(value);
    }
}

void mrEnumIterator_NCS<int>::initValidation() {
    resetValidation();
    m_validationOn = true;
    addValidation(this);
}

void mrEnumIterator_NCS<int>::resetValidation() {
    m_validationOn = false;
    m_validValues.clear();
}

bool mrEnumIterator_NCS<int>::addValidation(int value) {
    if (!m_validationOn) {
        initValidation();
    }
    for (const int known : m_validValues) {
        if (known == value) {
            return false;
        }
    }
    m_validValues.append(value);
    return true;
}

void mrEnumIterator_NCS<int>::addValidation(const mrList<int>* values) {
    for (const int value : *values) {
        addValidation(value);
    }
}

mrString& mrMapIterator<int>::operator[](int value) {
    return addValidation(value) ? *m_validNames.append("") : m_spareName;
}

mrString mrMapIterator<int>::valueToString(int value) const {
    auto name = m_validNames.begin();
    for (const int known : m_validValues) {
        if (name == m_validNames.end()) {
            break;
        }
        if (known == value) {
            return *name;
        }
        ++name;
    }
    return "";
}

int mrMapIterator<int>::stringToValue(mrString& text) const {
    const mrString beginning = text.toLower();
    auto value = m_validValues.begin();
    for (const mrString& name : m_validNames) {
        if (name.toLower().beginsWith(beginning)) {
            return *value;
        }
        ++value;
    }
    text.setFailed(true);
    return 0;
}

void mrMapIterator<int>::initValidation() {
    resetValidation();
    m_validationOn = true;
}

void mrMapIterator<int>::resetValidation() {
    mrEnumIterator_NCS::resetValidation();
    m_validNames.clear();
}

void mrMapIterator<int>::resetMap() {
    reset();
    resetValidation();
}
