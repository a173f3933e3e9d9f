# What cmake-lint checks of CMake files.

with section("format"):
    line_width = 120
    tab_size = 4

with section("lint"):
    # variables of a folder are in capitals where CMake or a user knows them
    private_var_pattern = "[0-9a-z_]+"
    macro_pattern = "[0-9a-z_]+"
    # a command without a comment; words of file() that are newer than this tool
    disabled_codes = ["C0113", "E1126"]
