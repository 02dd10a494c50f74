// The texts that a function gives of the elements of a range, in their order.
#pragma once

#include <functional>
#include <string>
#include <vector>

template <typename Range, typename Give>
std::vector<std::string> TextsOf(const Range& range, Give give) {
    std::vector<std::string> texts;
    for (const auto& element : range)
        texts.emplace_back(std::invoke(give, element));
    return texts;
}
