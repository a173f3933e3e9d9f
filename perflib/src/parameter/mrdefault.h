#pragma once

#include "parameter/mrparameter.h"
#include "text/mrexception.h"

/// Refuses a parameter's text; the caller shows it and keeps the value before.
[[noreturn]] inline void mrRefuse(const char* what, const mrString& text) {
    throw mrException(mrString(what) + text);
}

/// A parameter with one value of type T and no text conversion: classes at the end of the chain add that.
template <class T>
class mrDefault_NSC : public mrParameter {
  public:
    mrDefault_NSC() = default;
    mrDefault_NSC(T value, mrString name, mrString prompt) { init(value, name, prompt); }

    /// An empty prompt stands for the name.
    void init(T value, mrString name, mrString prompt) {
        setName(name, prompt);
        m_started = false;
        m_active = true;
        m_flags = 0;
        m_deprecatedNow = false;
        m_value = value;
    }
    /// From now on `value` is also shown, in lines of its own, under an old text.
    /// For suites that rename a value and keep old tables comparable.
    void addDeprecated(T value, mrString text) {
        m_deprecatedValues.append(value);
        m_deprecatedTexts.append(text);
    }

    void reset() override {
        m_started = false;
        m_value = T();
    }
    mrString valueString() const override { return valueToString(value()); }
    bool isDeprecatedParm() override { return !m_deprecatedValues.empty(); }
    bool setDeprecatedFlag(bool on) override;
    void translate(mrString text) override { m_value = validItem(text); }

    virtual T value() const { return m_value; }
    /// Changes the value of this moment; the walk goes on as if it had delivered it.
    /// For suites whose sizes move (mrCacheIterator).
    void setValue(T value) { m_value = value; }
    virtual mrString valueToString(T) const { return ""; }
    /// Marks the text as failed if it can't be converted.
    virtual T stringToValue(mrString&) const { return T(); }
    /// The value of a text; throws mrException for one that can't be converted.
    virtual T validItem(mrString text) {
        T value = stringToValue(text);
        if (text.failed()) {
            mrRefuse("Invalid value of ", m_name + " = " + text);
        }
        return value;
    }

  protected:
    T m_value{};

  private:
    mrList<T> m_deprecatedValues;
    mrList<mrString> m_deprecatedTexts;
};

template <class T>
bool mrDefault_NSC<T>::setDeprecatedFlag(bool on) {
    m_deprecatedNow = false;
    if (!on) {
        return false;
    }
    // Compared as texts: that serves types without an equality, and values that print alike count as alike.
    const mrString current = valueToString(m_value);
    auto text = m_deprecatedTexts.begin();
    for (const T& deprecated : m_deprecatedValues) {
        if (current == valueToString(deprecated)) {
            m_deprecatedNow = true;
            m_deprecatedText = *text;
            return true;
        }
        ++text;
    }
    return false;
}

/// Adds the text conversion of the operators of mrString.
template <class T>
class mrDefault : public mrDefault_NSC<T> {
  public:
    using mrDefault_NSC<T>::mrDefault_NSC;

    mrString valueToString(T value) const override { return mrText(value); }
    /// A blank text gives a zero value.
    T stringToValue(mrString& text) const override {
        T value{};
        value << text;
        return value;
    }
};

/// Adds conversion through a table of names: any beginning of a name, in any case, stands for its value, and
/// the first such name in the order of naming counts.
template <class T>
class mrMapDefault : public mrDefault_NSC<T> {
  public:
    using mrDefault_NSC<T>::mrDefault_NSC;

    /// The name of `value`, to be written: map[0] = "Auto".
    mrString& operator[](T value) {
        auto name = m_names.begin();
        for (const T& known : m_values) {
            if (known == value) {
                return *name;
            }
            ++name;
        }
        m_values.append(value);
        return *m_names.append("");
    }

    mrString validString() const override {
        return mrJoined(m_names, "|", [](const mrString& name) { return name; });
    }
    mrString valueToString(T value) const override {
        auto name = m_names.begin();
        for (const T& known : m_values) {
            if (known == value) {
                return *name;
            }
            ++name;
        }
        return "";
    }
    T stringToValue(mrString& text) const override {
        const mrString beginning = text.toLower();
        auto name = m_names.begin();
        for (const T& known : m_values) {
            if (name->toLower().beginsWith(beginning)) {
                return known;
            }
            ++name;
        }
        text.setFailed(true);
        return T();
    }

  private:
    mrList<T> m_values;
    mrList<mrString> m_names;
};

/// A shift between vectors: held to multiples of the alignment boundary, rounded down.
class DefaultShift : public mrDefault<int> {
  public:
    using mrDefault::mrDefault;
    int validItem(mrString text) override;
};

/// A misalignment: folded below the alignment boundary, with its sign.
class DefaultAlign : public mrDefault<int> {
  public:
    using mrDefault::mrDefault;
    int validItem(mrString text) override;
};
