#include "bench/result.h"

#include <json-c/json.h>

#include <algorithm>

namespace bench {
namespace {

std::string verdict(const Result& result) {
  std::string words = !result.row.aim ? "no aim" : result.is_met() ? "pass" : "MISSED";
  return words + (result.is_retried ? " (retried)" : "");
}

void print_row(const Result& result, std::FILE* output) {
  char aim[16] = "-";
  if (result.row.aim) {
    std::snprintf(aim, sizeof(aim), "%.3f", *result.row.aim);
  }
  std::fprintf(output, "%-34s %-30s %7.4f %7s  %s\n", result.row.name.c_str(),
               result.row.reference.c_str(), result.ratio(), aim, verdict(result).c_str());
}

json_object* json_text(const std::string& text) { return json_object_new_string(text.c_str()); }

json_object* json_number(double value) {
  json_object* number = json_object_new_double(value);
  json_object_set_serializer(number, json_object_double_to_json_string, const_cast<char*>("%.6g"),
                             nullptr);
  return number;
}

json_object* json_row(const Result& result) {
  const bool has_aim = result.row.aim.has_value();
  json_object* row = json_object_new_object();
  json_object_object_add(row, "name", json_text(result.row.name));
  json_object_object_add(row, "reference", json_text(result.row.reference));
  json_object_object_add(row, "ratio", json_number(result.ratio()));
  json_object_object_add(row, "aim", has_aim ? json_number(*result.row.aim) : nullptr);
  json_object_object_add(row, "pass", has_aim ? json_object_new_boolean(result.is_met()) : nullptr);
  json_object_object_add(row, "retried", json_object_new_boolean(result.is_retried));
  json_object_object_add(row, "unit",
                         json_text(result.measured.is_real_time ? "ns, real" : "ns, processor"));
  json_object_object_add(row, "time", json_number(result.measured.time_ns));
  json_object_object_add(row, "reference_time", json_number(result.reference.time_ns));
  return row;
}

}  // namespace

void print_table(const std::vector<Result>& results, std::FILE* output) {
  std::fprintf(output, "\n%-34s %-30s %7s %7s  %s\n", "benchmark", "reference", "ratio", "aim",
               "result");
  for (const Result& result : results) {
    print_row(result, output);
  }
  const auto missed = std::count_if(results.begin(), results.end(),
                                    [](const Result& result) { return !result.is_met(); });
  std::fprintf(output, "\n%zu rows, %td missed\n", results.size(), missed);
}

std::string json_document(const std::vector<Result>& results) {
  json_object* rows = json_object_new_array();
  for (const Result& result : results) {
    json_object_array_add(rows, json_row(result));
  }
  json_object* document = json_object_new_object();
  json_object_object_add(document, "rows", rows);
  const std::string text = json_object_to_json_string_ext(document, JSON_C_TO_STRING_PRETTY);
  json_object_put(document);
  return text + "\n";
}

}  // namespace bench
