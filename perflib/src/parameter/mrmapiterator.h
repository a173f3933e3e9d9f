#pragma once

#include "parameter/mriterator.h"

/// A list of values out of a set of legal ones, without text conversion.
template <class T>
class mrEnumIterator_NCS;

template <>
class mrEnumIterator_NCS<int> : public mrIterator_NSC<int> {
  public:
    mrString validString() const override;
    /// A value added while validation is on becomes legal.
    void add(int value) override;

    /// Switches validation on; the values present count as legal.
    virtual void initValidation();
    virtual void resetValidation();
    /// False if the value was legal already.
    virtual bool addValidation(int value);
    virtual void addValidation(const mrList<int>* values);

  protected:
    mrList<int> m_validValues;
    bool m_validationOn = false;
};

template <class T>
class mrMapIterator;

/// The same with a name for each legal value: map[0] = "-". The first name given to a value counts.
template <>
class mrMapIterator<int> : public mrEnumIterator_NCS<int> {
  public:
    using mrEnumIterator_NCS<int>::addValidation;

    mrString& operator[](int value);

    mrString valueToString(int value) const override;
    /// Any beginning of a name, in any case; the first in the order of naming.
    int stringToValue(mrString& text) const override;
    void initValidation() override;
    void resetValidation() override;
    /// Forgets values and names, for suites that set others.
    virtual void resetMap();

  private:
    mrList<mrString> m_validNames;
    mrString m_spareName;  ///< takes the second name of a value
};
