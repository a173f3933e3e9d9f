#pragma once

#include "parameter/mrdefault.h"

/// A parameter with a list of values that a test walks through, without text conversion.
template <class T>
class mrIterator_NSC : public mrDefault_NSC<T>, public mrList<T> {
  public:
    using mrDefault_NSC<T>::mrDefault_NSC;
    mrIterator_NSC() = default;
    /// A copy holds the values; its walk has not begun.
    mrIterator_NSC(const mrIterator_NSC& other) : mrDefault_NSC<T>(other), mrList<T>(other) {
        this->m_started = false;
    }
    mrIterator_NSC& operator=(const mrIterator_NSC& other) {
        mrDefault_NSC<T>::operator=(other);
        mrList<T>::operator=(other);
        m_currentItem = {};
        this->m_started = false;
        return *this;
    }

    void reset() override {
        mrDefault_NSC<T>::reset();
        m_currentItem = {};
        this->clear();
    }
    mrString defaultString() const override {
        return mrJoined(*this, "; ", [this](const T& value) { return this->valueToString(value); });
    }
    bool nextValue() override;
    /// Takes a list of values, separated by ";". A bad text leaves the values as they are.
    void translate(mrString text) override;
    virtual void add(T value) { this->append(value); }

  private:
    typename mrList<T>::iterator m_currentItem;
};

template <class T>
bool mrIterator_NSC<T>::nextValue() {
    if (this->m_started) {
        ++m_currentItem;
    } else {
        m_currentItem = this->begin();
    }
    this->m_started = m_currentItem != this->end();
    this->m_value = this->m_started ? *m_currentItem : T();
    return this->m_started;
}

template <class T>
void mrIterator_NSC<T>::translate(mrString text) {
    mrStringList words;
    if (text.parse(words, ";") == 0) {
        mrRefuse("Empty iterator definition", "");
    }
    mrList<T> values;
    for (mrString word : words) {
        word.trim();
        const T value = this->stringToValue(word);
        if (word.failed()) {
            mrRefuse("Invalid value of ", this->m_name + " = " + word);
        }
        values.append(value);
    }
    this->swap(values);
}

/// Adds the text conversion of the operators of mrString.
template <class T>
class mrIterator : public mrIterator_NSC<T> {
  public:
    using mrIterator_NSC<T>::mrIterator_NSC;

    mrString valueToString(T value) const override { return mrText(value); }
    T stringToValue(mrString& text) const override {
        T value{};
        value << text;
        return value;
    }
};
