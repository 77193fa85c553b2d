// SPDX-License-Identifier: MIT
#pragma once

// The commands of quilfarm. Each reads its own arguments, returns the exit code and throws Failure.

#include <string>
#include <vector>

namespace quilfarm {

using Arguments = std::vector<std::string>;

int submit(const Arguments &arguments);
int task(const Arguments &arguments);
int check(const Arguments &arguments);
int status(const Arguments &arguments);
int assemble(const Arguments &arguments);
int writeTemplate(const Arguments &arguments);

} // namespace quilfarm
