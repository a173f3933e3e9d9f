#pragma once

#include "support/work_folder.h"
#include "text/mrstring.h"

/// A folder whose files have names as the framework takes them.
class TempFolder : public WorkFolder {
  public:
    mrString file(const std::string& name, const std::string& content) const {
        return WorkFolder::file(name, content).c_str();
    }
};
