#pragma once

/// The floating-point registers, as tests set and restore them.

#include "machine/mrfloat.h"
#include "zylcore.h"

inline unsigned controlWord87() { return zylFpuSsx4TS(2, 0, 0); }
inline unsigned wordSSX() { return zylFpuSsx4TS(6, 0, 0); }
/// Sets exception flags of MXCSR without raising anything; 8 is overflow.
inline void setFlagsSSX(unsigned flags) { zylFpuSsx4TS(5, flags, flags); }

/// Puts back the registers, and the values that the next initialisation takes.
class KeptFloatState {
  public:
    KeptFloatState() = default;
    KeptFloatState(const KeptFloatState&) = delete;
    KeptFloatState& operator=(const KeptFloatState&) = delete;
    ~KeptFloatState() {
        zylFpuSsx4TS(1, m_control, 0xFFFF);
        zylFpuSsx4TS(5, m_ssx, 0xFFFF);
        ts87Base::Exception = m_exception87;
        tsSSXBase::Exception = m_exceptionSSX;
        g_ctrl87.clear();
        g_ssx.clear();
    }

  private:
    unsigned m_control = controlWord87();
    unsigned m_ssx = wordSSX();
    unsigned m_exception87 = ts87Base::Exception;
    unsigned m_exceptionSSX = tsSSXBase::Exception;
};
