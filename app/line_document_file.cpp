#include "app/line_document_file.h"

#include "core/file_names.h"
#include "core/session_state.h"
#include "core/user_interface.h"

namespace Module_Brenlox {

std::string ask_for_line_document() {
  if (session().current_station_index < 1) {
    user_interface().show_message("There is no data in the database");
    return {};
  }
  std::string path = Module_util::directory_of(session().database_file) + session().current_line + "_" +
                     session().current_data_type + ".pdf";
  const int chosen = Module_util::select_output_file(path, "All graphs of the line",
                                                     "PDF documents (*.pdf)|*.pdf|All files (*.*)|*.*");
  return chosen == 0 ? path : std::string();
}

}  // namespace Module_Brenlox
