// Texts are what users know and scripts compare: their misspellings stay.

#include "session/mroptiontable.h"

#include "session/options.h"
#include "stream/mrfilenames.h"

using enum mrOptionUse;

namespace {

// One row a key: the head, the lines of the short text, the lines of the long text; those of a file key stand
// round what mrOptionRow::descr() says of its default file. The tab in the long text of -T gives way to the
// list of features, see mrSession::updateOptions.
// clang-format off
constexpr mrOptionRow rows[] = {
    {'B', B_info, B_apply, Always,
     "-B               = batch mode (no console input)\n",
     "If both -B and -A key present in command line then -B key is performed\n"},
    {'A', A_info, A_apply, Always,
     "-A<Timing|Params|Misalign|All> = set detail level of the console input\n",
     "Timing  : adjust timing method at the very beginning\n"
     "Params  : adjust common parameters for all tests at the very beginning\n"
     "Misalign: adjust memory misalignment at the very beginning\n"
     "All     : adjust all above-listed and adjust test parameters\n"
     "          before each test running\n"
     "Certain parameter may be adjusted from console only if it is not defined\n"
     "    by -d key or in ini-file\n"
     "If -A has no mode then -AAll mode is implemented\n"
     "If several -A keys present in command line then all modes are combined\n"
     "If both -A and -B key present in command line then -B key is performed\n"
     "If neither of -A and -B key present in command line then\n"
     "    -ATimingParams is performed\n"},
    {'d', d_info, d_apply, Always,
     "-d<name>=<value> = set MR parameter value\n",
     "Any parameter asked from console or written in ini-file may be set by -d key\n"
     "Data set by -d option has the highest priority\n"
     "-d key may be used several times in command line\n"},
    {'i', i_info, i_apply, Always,
     "-i[<file-name>]  = read MR parameters from ini-file\n",
     "Ini-file section [Metrig] contains common parameters for all tests\n"
     "Ini-file section [<func-name>] contains parameters for measurement of this function\n"
     "A parameter is read from ini-file only if it is not defined by -d key\n"
     "At the same time this parameter will not be asked from console\n",
     {extIni, 'p'},
     "If several -i or -I keys present in command line then only the last key is valid\n"},
    {'I', I_info, I_apply, Always,
     "-I[<file-name>]  = write MR parameters to ini-file and exit\n",
     "This key opens ini-file and put test parameters with default values\n"
     "If the parameter is already present in ini-file then MR doesn't overwrite it\n"
     "Ini-file section [Metrig] will contain common parameters for all tests\n"
     "Ini-file section [<func-name>] will contain parameters for measurement of this function\n",
     {extIni, 'p'},
     "If several -i or -I keys present in command line then only the last key is valid\n"},
    {'P', P_info, P_apply, Always,
     "-P               = read tested function names from ini-file\n",
     "This key affects only if -i key is present in command line\n"
     "All functions present in ini-file as section names will be measured\n"
     "Other functions will not be measured\n"},
    {'o', o_info, o_apply, Always,
     "-o[<file-name>]  = create txt-file and write console output\n",
     "",
     {extOut, 'l'},
     "If several -o keys present in command line then all these files will be created\n"
     "    and filled\n"},
    {'O', O_info, O_apply, Always,
     "-O[<file-name>]  = add console output to txt-file\n",
     "",
     {extOut, 'l'},
     "If several -O keys present in command line then all these files will be opened\n"
     "    and filled\n"},
    {'L', L_info, L_apply, Always,
     "-L<ERR|WARN|PERF|INFO|TRACE|DATA> = set detail level of the console output\n",
     "ERR  : output errors\n"
     "WARN : output errors & warnings\n"
     "PERF : output errors & warnings & performance for each parameter set\n"
     "INFO : output errors & warnings & performance for each parameter set &\n"
     "       detailed course of performance measurement\n"
     "TRACE: output errors & warnings & performance for each parameter set &\n"
     "       MR function call tracing\n"
     "DATA : output errors & warnings & performance for each parameter set &\n"
     "       vectors data before and after zyl function call\n"
     "If several -L keys present in command line then all modes are combined\n"},
    {'J', J_info, J_apply, Always,
     "-J[<min-loops>]  = number of external measurement loops\n",
     "This key defines the number of external measurement loops for the whole list of functions\n"},
    {'r', r_info, r_apply, Always,
     "-r[<file-name>]  = create csv-file and write MR results\n",
     "This key creates table file for performance results\n",
     {extCsv, 'l'},
     "If several -r keys present in command line then all these files will be created\n"
     "    and filled\n"},
    {'R', R_info, R_apply, Always,
     "-R[<file-name>]  = add MR results to csv-file\n",
     "This key adds for performance results to table file\n",
     {extCsv, 'l'},
     "If several -R keys present in command line then all these files will be opened\n"
     "    and filled\n"},
    {'q', q_info, q_apply, NameTables,
     "-q[<file-name>]  = create csv-file (*_name.csv is default) and write function parameter name lines\n"
     "-q+              = add function parameter name lines to MR results table file\n",
     "",
     {extName, 'l'},
     "If several -q[<file-name>] keys present in command line then all these files\n"
     "    will be created and filled\n"
     "-q+ key affects only if -r or -R keys are present in command line\n"},
    {'Q', Q_info, Q_apply, NameTables,
     "-Q               = exit after function parameter name table creation\n",
     "This key affects only if -q or -q+ keys are present in command line\n"},
    {'u', u_info, u_apply, Always,
     "-u[<file-name>]  = create csv-file and write summary table ('_sum' is added to default title name)\n",
     "",
     {extSum, 'l'},
     "If several -u keys present in command line then all these files will be created\n"
     "    and filled\n"},
    {'U', U_info, U_apply, Always,
     "-U[<file-name>]  = add summary table to csv-file ('_sum' is added to default title name)\n",
     "",
     {extSum, 'l'},
     "If several -U keys present in command line then all these files will be opened\n"
     "    and filled\n"},
    {'g', g_info, g_apply, Always,
     "-g[<file-name>]  = create signal file at the end of the whole testing\n",
     "",
     {extSgl, 'l'},
     "If several -g keys present in command line then only the last key is valid\n"},
    {'n', n_info, n_apply, Always,
     "-n<title-name>   = default title name for ini-file and output files\n",
     "This key sets default file name for input and output files defined by \n"
     "    -i, -I, -o, -O, -r, -R, -u, -U, -g, -q keys\n"
     "If several -n keys present in command line then only the last key is valid\n"},
    {'p', p_info, p_apply, Always,
     "-p<dir-name>     = default directory for input files i.e. ini & test data files\n",
     "This key sets default file directory for input files defined by -i, -I keys\n"
     "    and also for data files opened in a test by i_stream class\n"
     "If several -p keys present in command line then only the last key is valid\n"},
    {'l', l_info, l_apply, Always,
     "-l<dir-name>     = default directory for output files (listings)\n",
     "This key sets default file directory for output files defined by \n"
     "    -o, -O, -r, -R, -u, -U, -g, -q keys\n"
     "If several -l keys present in command line then only the last key is valid\n"},
    {'f', f_info, f_apply, Always,
     "-f < or-pattern> = run tests for functions with pattern in name\n"
     "-f-<not-pattern> = don't run tests for functions with pattern in name\n"
     "-f+<and-pattern> = run only tests for functions with pattern in name\n"
     "-f=< eq-pattern> = run tests for function with this full name\n",
     "Several -f keys may present in command line.\n"
     "The test will be run if function name meets following conditions:\n"
     "       it is equal to one of -f= arguments\n"
     "    OR\n"
     "       it contains one of -f arguments\n"
     "       AND\n"
     "       it contains all of -f+ arguments if any\n"
     "       AND\n"
     "       it doesn't contain any of -f- arguments\n"},
    {'t', t_info, t_apply, Always,
     "-t[-|+|=]<patrn> = run (don't run) tests with pattern in test name\n",
     "Several -t keys may present in command line.\n"
     "The test will be run if its name meets following conditions:\n"
     "       it equals to one of -t= arguments\n"
     "    OR\n"
     "       it contains one of -t arguments\n"
     "       AND\n"
     "       it contains all of -t+ arguments if any\n"
     "       AND\n"
     "       it doesn't contain any of -t- arguments\n"},
    {'m', m_info, m_apply, Always,
     "-m[-|+|=]<patrn> = run (don't run) tests registered in file with pattern in file name\n",
     "Several -m keys may present in command line.\n"
     "In order to run the test source file name has to meet following conditions:\n"
     "    It must be equal to one of -m= arguments\n"
     "    OR\n"
     "       It must contain one of -m arguments\n"
     "       AND\n"
     "       it must contain all of -m+ arguments if any\n"
     "       AND\n"
     "       it mustn't contain one of -m- arguments if any\n"},
    {'k', k_info, k_apply, Always,
     "-k<and|or>       = compose different keys (-f,-t,-m) by logical operation\n",
     "This key sets composition operation for -f, -t, -m conditions\n"
     "-kand key runs the test if\n"
     "                    function name meets -f conditions\n"
     "                AND test name meets -t conditions\n"
     "                AND source file name meets -m conditions\n"
     "-kor key runs the test if\n"
     "                    function name meets -f conditions\n"
     "                 OR test name meets -t conditions\n"
     "                 OR source file name meets -m conditions\n"
     "If no -k keys present in command line then -kand key is realized\n"
     "If several -k keys present in command line then only the last key is valid\n"},
    {'F', F_info, F_apply, Always,
     "-F<func-name>    = start testing from function with func-name full name\n",
     "If several -F keys present in command line then only the last key is valid\n"},
    {'Y', Y_info, Y_apply, Always,
     "-Y<HIGH|NORMAL>  = set high or normal process prioritY (normal is default)\n",
     "If several -Y keys present in command line then only the last key is valid\n"},
    {'H', H_info, H_apply, Always,
     "-H[ONLY]         = add 'Interest' column to table file [and run only hot tests]\n",
     "If both -H & -HO keys present in command line then only the last key is valid\n"},
    {'W', W_info, W_apply, Always,
     "-W= unmask floating-point exceptions\n",
     "This key is used for unmasking floating-point exceptions\n"},
    {'T', T_info, T_apply, Library,
     "-T[<cpu-features>]   = call zylSetCpuFeatures( cpuFeatures )\n",
     "This key works only if you link zyl*merged libraries\n"
     "    and include <zylcore> before <zy> in your test file.\n"
     "To run Zorva ZYL code optimized for specific processor enter following {cpu-features}:\n"
     "\tIf several -T keys present in command line then only the last key is valid\n"},
    {'N', N_info, N_apply, Library,
     "-N[<num-threads>]= call zylSetNumThreads( <num-threads> )\n",
     "This key works only if you link zyl* libraries\n"
     "    and include <zylcore> before <zy> in your test file.\n"
     "If several -N keys present in command line then only the last key is valid\n"},
    {'S', S_info, S_apply, Hidden,
     "-SU              = measure functions with data set & use\n",
     "This option should be used to prove parallelize function advantage\n"
     "Test does not show clear function performance\n"},
    {'C', C_info, C_apply, Hidden,
     "-C               = run tests with data in cache and out of cache (if that is supported by test)\n",
     "This option should be used to clarify performance difference between in-cache and out-of-cache data\n"
     "Not all tests support this option\n"},
    {'s', s_info, s_apply, Always,
     "-s[-]            = sort or don't sort functions (sort mode is default)\n",
     "If both -s & -s- keys present in command line then only the last key is valid\n"},
    {'e', e_info, e_apply, Always,
     "-e               = enumerate tests and exit\n",
     ""},
    {'v', v_info, v_apply, Always,
     "-v               = type the version number of the Metrig and exit\n",
     ""},
    {'@', nullptr, nullptr, Always,
     "-@<file-name>    = read command line options from specified file\n",
     "This key works as if command line is extended by the file content\n"
     "    where <new line> symbol is converted to <space symbol>.\n"
     "Several -@ keys may present in command line.\n"},
    {'h', h_info, h_apply, Always,
     "-h               = type short help and exit\n"
     "-hh              = type extended help and exit\n"
     "-h<key>          = type extended help for the key and exit\n",
     "If several -h present in command line then only the last key is valid\n"},
    {'c', c_info, c_apply, Always,
     "-c[<num-ms>]     = set min number of ms for 1 measurement\n",
     "This key defines the minimum number of milliseconds for 1 measurement point\n"},
    {'j', j_info, j_apply, Always,
     "-j[<min-loops>]  = minimal number of measurement loops\n",
     "This key defines the minimum number of measurement loops for 1 measurement point\n"},
    {'?', hq_info, hq_apply, Always,
     "",
     "-?               = type short help with hidden keys and exit\n"
     "-??              = type extended help with hidden keys and exit\n"
     "-?<key>          = type extended help for the key and exit\n"
     "If several -? keys present in command line then only the last key is valid\n"},
};
// clang-format on

}  // namespace

constinit const std::span<const mrOptionRow> mrOptionTable = rows;

mrString mrOptionRow::descr() const {
    mrString text = m_descr;
    if (m_file.m_ext != nullptr) {
        text << "If file-name is empty then default file path will be used:\n"
                "    <default-dir>/<default-name>"
             << m_file.m_ext << "\n    <default-dir> : <exe-file-dir> or -" << m_file.m_dirKey
             << " key argument if any\n"
                "    <default-name>: <exe-file-name-without-extention> or -n key argument if any\n";
    }
    return text << m_descrEnd;
}
