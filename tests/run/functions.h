#pragma once

#include <string_view>

/// A measured function, as tables and listings name it.
struct MeasuredFunction {
    std::string_view name;
    std::string_view suite;
    std::string_view source;
    std::string_view mark;  ///< of its registration: what stands in the timed stretch
    int place;              ///< in a sorted run, after the processor test, which has 0
    int rows;               ///< result lines of a run with default parameters, without "reperf.txt"
};

/// In the order of registration.
inline constexpr MeasuredFunction measuredFunctions[] = {
    {"zylsUppercaseLatin_8u_I", "TimsCaseLatin", "p_chcase_ia", "ZY_REG_X", 39, 6},
    {"zylsLowercaseLatin_8u_I", "TimsCaseLatin", "p_chcase_ia", "ZY_REG_X", 26, 6},
    {"zylsUppercaseLatin_8u", "TimsCaseLatin", "p_chcase_ia", "ZY_REG", 38, 6},
    {"zylsLowercaseLatin_8u", "TimsCaseLatin", "p_chcase_ia", "ZY_REG", 25, 6},
    {"zylsCompare_8u", "TimchCompare", "p_chcomp_ia", "ZY_REG", 1, 6},
    {"zylsEqual_8u", "TimchCompare", "p_chcomp_ia", "ZY_REG", 8, 6},
    {"zylsCompareIgnoreCaseLatin_8u", "TimchCompare", "p_chcomp_ia", "ZY_REG", 2, 6},
    {"zylsConcat_8u", "TimsConcat", "p_chconcat_ia", "ZY_REG", 3, 6},
    {"zylsConcat_8u_D2L", "TimsConcatD2L", "p_chconcatd2_ia", "ZY_REG", 4, 24},
    {"zylsConcatC_8u_D2L", "TimsConcatD2L", "p_chconcatd2_ia", "ZY_REG", 5, 24},
    {"zylsSplitC_8u_D2L", "TimsConcatD2L", "p_chconcatd2_ia", "ZY_REG", 32, 24},
    {"zylsConvertUTF_8u16u", "TimsCvtUTF", "p_chcvtutf_vl", "ZY_REG", 6, 6},
    {"zylsConvertUTF_16u8u", "TimsCvtUTF", "p_chcvtutf_vl", "ZY_REG", 7, 6},
    {"zylsFind_8u", "TimsFind", "p_chfind_ia", "ZY_REG", 9, 36},
    {"zylsFindRev_8u", "TimsFind", "p_chfind_ia", "ZY_REG", 13, 36},
    {"zylsFindC_8u", "TimsFind", "p_chfind_ia", "ZY_REG", 10, 6},
    {"zylsFindRevC_8u", "TimsFind", "p_chfind_ia", "ZY_REG", 14, 6},
    {"zylsFindCAny_8u", "TimsFind", "p_chfind_ia", "ZY_REG", 11, 18},
    {"zylsFindRevCAny_8u", "TimsFind", "p_chfind_ia", "ZY_REG", 15, 18},
    {"zylsFind_Z_8u", "TimsFind", "p_chfind_ia", "ZY_REG", 16, 36},
    {"zylsFindC_Z_8u", "TimsFind", "p_chfind_ia", "ZY_REG", 12, 6},
    {"zylsHash_8u32u", "TimchHash", "p_chhash_ia", "ZY_REG", 17, 4},
    {"zylsHash_16u32u", "TimchHash", "p_chhash_ia", "ZY_REG", 18, 4},
    {"zylsHashSJ2_8u32u", "TimchHash", "p_chhash_ia", "ZY_REG", 21, 4},
    {"zylsHashSJ2_16u32u", "TimchHash", "p_chhash_ia", "ZY_REG", 22, 4},
    {"zylsHashMSCS_8u32u", "TimchHash", "p_chhash_ia", "ZY_REG", 19, 4},
    {"zylsHashMSCS_16u32u", "TimchHash", "p_chhash_ia", "ZY_REG", 20, 4},
    {"zylsInsert_8u_I", "TimchInsert", "p_chinsert_ia", "ZY_REG_I", 24, 6},
    {"zylsRemove_8u_I", "TimchInsert", "p_chinsert_ia", "ZY_REG_I", 30, 6},
    {"zylsInsert_8u", "TimchInsert", "p_chinsert_ia", "ZY_REG", 23, 6},
    {"zylsRemove_8u", "TimchInsert", "p_chinsert_ia", "ZY_REG", 29, 6},
    {"zylsRegExpFind_8u", "TimchRegExpFind", "p_chregexp_ib", "ZY_REG_I", 27, 0},
    {"zylsRegExpReplace_8u", "TimchRegExpReplace", "p_chregexpreplace_vl", "ZY_REG_I", 28, 6},
    {"zylsReplaceC_8u", "TimsReplace", "p_chreplace_ia", "ZY_REG_I", 31, 6},
    {"zylsTrimC_8u_I", "TimsTrim", "p_chtrim_ia", "ZY_REG_I", 34, 6},
    {"zylsTrimC_8u", "TimsTrim", "p_chtrim_ia", "ZY_REG_I", 33, 6},
    {"zylsTrimCAny_8u", "TimsTrimAny", "p_chtrimany_ia", "ZY_REG_I", 35, 24},
    {"zylsTrimEndCAny_8u", "TimsTrimAny", "p_chtrimany_ia", "ZY_REG_I", 36, 24},
    {"zylsTrimStartCAny_8u", "TimsTrimAny", "p_chtrimany_ia", "ZY_REG_I", 37, 24},
};
