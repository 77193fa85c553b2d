// SPDX-License-Identifier: MIT
#include "devhost/util/FramePlaces.h"

#include <regex.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace devhost {

std::string hashPlaces(const std::string &name) {
    static const regex_t place = [] {
        regex_t compiled;
        regcomp(&compiled, R"(%(0[0-9][0-9]?)?d|\$F([0-9][0-9]?)?)", REG_EXTENDED);
        return compiled;
    }();
    std::string result;
    const char *at = name.c_str();
    for (regmatch_t found[3]; regexec(&place, at, 3, found, 0) == 0; at += found[0].rm_eo) {
        const regoff_t digits = std::max(found[1].rm_so, found[2].rm_so); // -1 for none
        const unsigned long count = digits < 0 ? 1 : std::strtoul(at + digits, nullptr, 10);
        result.append(at, static_cast<size_t>(found[0].rm_so));
        result.append(std::max(count, 1ul), '#');
    }
    return result + at;
}

std::string frameText(double number, unsigned padding) {
    double whole = std::floor(std::abs(number));
    long thousandths = std::lround((std::abs(number) - whole) * 1000);
    if (thousandths == 1000) {
        whole += 1;
        thousandths = 0;
    }
    char digits[64];
    std::snprintf(digits, sizeof digits, "%0*.0f", static_cast<int>(std::min(padding, 16u)), whole);
    const bool isNegative = number < 0 && (whole > 0 || thousandths);
    std::string result = (isNegative ? "-" : "") + std::string(digits);
    if (thousandths) {
        std::snprintf(digits, sizeof digits, ".%03ld", thousandths);
        result += digits;
        result.erase(result.find_last_not_of('0') + 1);
    }
    return result;
}

std::string numberHashes(const std::string &pattern, double number) {
    std::string result;
    for (size_t at = 0; at < pattern.size();) {
        size_t end = at;
        while (end < pattern.size() && pattern[end] == '#')
            ++end;
        if (end == at)
            result += pattern[at++];
        else
            result += frameText(number, static_cast<unsigned>(end - at));
        at = std::max(at, end);
    }
    return result;
}

} // namespace devhost
