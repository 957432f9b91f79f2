#pragma once

/// Whether names that differ in nothing but the case of letters are, as a rule, names of one file here.
bool IsCaseIgnored();
