#pragma once

constexpr double millimetresPerInch = 25.4;
constexpr double millimetresPerMetre = 1000;
