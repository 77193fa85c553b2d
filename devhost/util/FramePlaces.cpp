// SPDX-License-Identifier: MIT
#include "devhost/util/FramePlaces.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <regex>

namespace devhost {

std::string hashPlaces(const std::string &name) {
    static const std::regex place(R"(%(?:0(\d\d?))?d|\$F(\d\d?)?)");
    std::string result;
    auto behind = name.cbegin();
    for (std::sregex_iterator each(name.begin(), name.end(), place), end; each != end; ++each) {
        const std::string digits = (*each)[1].str() + (*each)[2].str();
        result.append(behind, (*each)[0].first);
        result.append(digits.empty() ? 1 : std::max<size_t>(std::stoul(digits), 1), '#');
        behind = (*each)[0].second;
    }
    return result.append(behind, name.cend());
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
