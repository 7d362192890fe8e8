// texts.h: texts of surveys and messages as Python has them.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include <pybind11/pybind11.h>

namespace Python {

/// Bytes that are no UTF-8, as in names of older surveys, become the replacement character.
inline pybind11::str text_of(std::string_view bytes) {
  PyObject* const text =
      PyUnicode_DecodeUTF8(bytes.data(), static_cast<pybind11::ssize_t>(bytes.size()), "replace");
  if (text == nullptr) {
    throw pybind11::error_already_set();
  }
  return pybind11::reinterpret_steal<pybind11::str>(text);
}

inline pybind11::list texts_of(const std::vector<std::string>& texts) {
  pybind11::list list;
  for (const std::string& text : texts) {
    list.append(text_of(text));
  }
  return list;
}

}  // namespace Python
