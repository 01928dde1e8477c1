#ifndef ZEG_TESTS_SUPPORT_GBK_H
#define ZEG_TESTS_SUPPORT_GBK_H

#include <string>

namespace zeg_test {

// Tests write their Chinese text in UTF-8; the normaliser works on GBK.
// Characters the other side lacks are dropped.
std::string gbk(const std::string& utf8);
std::string utf8(const std::string& gbk);

}  // namespace zeg_test

#endif
