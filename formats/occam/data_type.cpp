#include "formats/occam/data_type.h"

#include <algorithm>

namespace Module_occam {

namespace {

constexpr std::array<TypeMeaning, 12> meanings{
    {{DataType::te_resistivity, FieldMode::te, Quantity::log10_resistivity, "TE resistivity"},
     {DataType::te_phase, FieldMode::te, Quantity::phase, "TE phase"},
     {DataType::te_real_tipper, FieldMode::te, Quantity::real_tipper, "TE Re tipper"},
     {DataType::te_imaginary_tipper, FieldMode::te, Quantity::imaginary_tipper, "TE Im tipper"},
     {DataType::tm_resistivity, FieldMode::tm, Quantity::log10_resistivity, "TM resistivity"},
     {DataType::tm_phase, FieldMode::tm, Quantity::phase, "TM phase"},
     {DataType::te_linear_resistivity, FieldMode::te, Quantity::resistivity, "TE linear resistivity"},
     {DataType::tm_linear_resistivity, FieldMode::tm, Quantity::resistivity, "TM linear resistivity"},
     {DataType::te_real_impedance, FieldMode::te, Quantity::real_impedance, "TE Re Z"},
     {DataType::te_imaginary_impedance, FieldMode::te, Quantity::imaginary_impedance, "TE Im Z"},
     {DataType::tm_real_impedance, FieldMode::tm, Quantity::real_impedance, "TM Re Z"},
     {DataType::tm_imaginary_impedance, FieldMode::tm, Quantity::imaginary_impedance, "TM Im Z"}}};

}  // namespace

const TypeMeaning* find_meaning(DataType type) {
  const auto found = std::ranges::find(meanings, type, &TypeMeaning::type);
  return found == meanings.end() ? nullptr : &*found;
}

std::string data_type_name(DataType type) {
  const TypeMeaning* const meaning = find_meaning(type);
  return meaning != nullptr ? meaning->name : "type " + std::to_string(static_cast<int>(type));
}

}  // namespace Module_occam
