#ifndef OT95_TESTS_OIN_AGREEMENT_DICTIONARY_H
#define OT95_TESTS_OIN_AGREEMENT_DICTIONARY_H

#include <string>

/// Prints the words by which ICU divides texts of a language that writes without blanks, one a
/// line. @param name of ICU's dictionary. @return whether there is one.
bool PrintDictionary(const std::string& name);

#endif
