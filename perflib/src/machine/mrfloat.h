#pragma once

#include "text/mrstring.h"

/// The x87 control and status words.
class ts87Base {
  public:
    int getCW() const;
    int getSW() const;
    void clear();
    void set(unsigned value, unsigned mask);
    void setDefault();
    // Masks for suites that measure with other exceptions than the program's.
    void enableExceptions();
    void disableExceptions();
    void disableInexactException();

    /// The control word as text, for suites that print it.
    static mrString strCW(unsigned word);
    /// Texts of the flags set, or "Ok". A text with "?" marks a bad status; inexact results are normal and
    /// get "_".
    static mrString strSW(unsigned word);

    static unsigned Precision;  ///< 53 bits
    static unsigned Exception;  ///< masks; zero divide is not masked and raises SIGFPE
    static unsigned Rounding;
};

/// MXCSR. Without the unit nothing is touched and every word reads 0.
class tsSSXBase {
  public:
    tsSSXBase();

    bool present() const { return m_present; }
    unsigned get() const;
    void clear();
    void destroy();
    void set(unsigned value, unsigned mask);
    void setDefault();
    // Masks for suites that measure with other exceptions than the program's.
    void enableExceptions();
    void disableExceptions();
    void disableInexactException();

    /// The control bits as text, for suites that print them.
    mrString strCW(unsigned word) const;
    mrString strExceptionState(unsigned word) const;

    static unsigned Exception;
    static unsigned Rounding;
    static unsigned FlushZero;

  protected:
    bool m_present;
};

/// Watches the x87 unit over one parameter combination: what every timed call leaves in the words is
/// collected.
class mr87 {
  public:
    mr87() : m_base(std::make_unique<ts87Base>()) {}
    // Copies, for suites that watch a unit of their own.
    mr87(const mr87& other);
    mr87& operator=(const mr87& other);

    /// Defaults into the registers, nothing collected.
    void init();
    /// Before and after a timed call.
    void start();
    void stop();
    void clear();

    bool badStatus() const { return strSW().found("?"); }
    mrString strCW() const { return ts87Base::strCW(m_cwAccum); }
    mrString strSW() const { return ts87Base::strSW(m_swAccum); }
    unsigned getCW() const { return m_cwAccum; }
    unsigned getSW() const { return m_swAccum; }
    /// In force from the next init on.
    void setExceptionValue(unsigned value) { ts87Base::Exception = value; }

  private:
    std::unique_ptr<ts87Base> m_base;
    unsigned m_cwAccum = 0;
    unsigned m_swAccum = 0;
};

/// The same for MXCSR.
class mrSSX {
  public:
    mrSSX() : m_base(std::make_unique<tsSSXBase>()) {}
    explicit mrSSX(std::unique_ptr<tsSSXBase> base) : m_base(std::move(base)) {}
    // Copies, for suites that watch a unit of their own.
    mrSSX(const mrSSX& other);
    mrSSX& operator=(const mrSSX& other);

    void init();
    void start();
    void stop();
    void clear();

    bool badStatus() const { return strExceptionState().found("?"); }
    mrString strCW() const { return m_base->strCW(m_accum); }
    mrString strExceptionState() const { return m_base->strExceptionState(m_accum); }
    unsigned get() const { return m_accum; }
    void setExceptionValue(unsigned value) { tsSSXBase::Exception = value; }

  private:
    std::unique_ptr<tsSSXBase> m_base;
    unsigned m_accum = 0;
};

/// From the next init on only inexact results are masked, in both units: the -W key.
void mrUnmaskFloatExceptions();
/// Switches flush-to-zero of MXCSR on, as it stays for the whole process.
void mrFlushToZero();
/// After a jump out of a signal handler: flush-to-zero again, and no x87 exception pending.
void mrRestoreFloatState();

extern mr87 g_ctrl87;
extern mrSSX g_ssx;
