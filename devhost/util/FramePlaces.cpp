// SPDX-License-Identifier: MIT
#include "devhost/util/FramePlaces.h"

#include <algorithm>
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

} // namespace devhost
