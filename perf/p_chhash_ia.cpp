// Hashes of short texts: the strings that are hashed are short, so the walk is the suite's own.

#include "p_common.h"
#include "zy.h"

namespace {

constexpr const char* SourceFile = "perf/p_chhash_ia";

zyVector pSrc;
constexpr zyArgument vectors[] = {{pSrc, zyArgSrc}};
mrStepIterator<int> len;
Zyl32u val_32u;

/// The length is asked of the parameter by a virtual call inside the timed body. That is in every table so
/// far, so the compiler is kept from seeing through it.
ZY_ENTRY int length() {
    const mrDefault_NSC<int>* parm = &len;
    asm volatile("" : "+r"(parm));
    return parm->value();
}

ZY_ENTRY int tcall_zylsHash_8u32u() { return zylsHash_8u32u(pSrc.data<Zyl8u>(), length(), &val_32u); }
ZY_ENTRY int tcall_zylsHash_16u32u() { return zylsHash_16u32u(pSrc.data<Zyl16u>(), length(), &val_32u); }
ZY_ENTRY int tcall_zylsHashSJ2_8u32u() { return zylsHashSJ2_8u32u(pSrc.data<Zyl8u>(), length(), &val_32u); }
ZY_ENTRY int tcall_zylsHashSJ2_16u32u() {
    return zylsHashSJ2_16u32u(pSrc.data<Zyl16u>(), length(), &val_32u);
}
ZY_ENTRY int tcall_zylsHashMSCS_8u32u() { return zylsHashMSCS_8u32u(pSrc.data<Zyl8u>(), length(), &val_32u); }
ZY_ENTRY int tcall_zylsHashMSCS_16u32u() {
    return zylsHashMSCS_16u32u(pSrc.data<Zyl16u>(), length(), &val_32u);
}

class TimchHash : public zyVectorTest<vectors, len> {
  public:
    using zyVectorTest::zyVectorTest;

    bool canStart() override {
        zyVectorTest::canStart();
        len.reset();
        len.setName("length");
        len.setSteps(4, 32, OprtnMul, 2);
        return true;
    }

    bool initData() override { return pSrc.createVector(len.value(), -1); }
};

ZY_REG(TimchHash, zylsHash_8u32u)
ZY_REG(TimchHash, zylsHash_16u32u)
ZY_REG(TimchHash, zylsHashSJ2_8u32u)
ZY_REG(TimchHash, zylsHashSJ2_16u32u)
ZY_REG(TimchHash, zylsHashMSCS_8u32u)
ZY_REG(TimchHash, zylsHashMSCS_16u32u)

}  // namespace
