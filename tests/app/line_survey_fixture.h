// line_survey_fixture.h: the main window on a line whose file says its dipole, which outputs go by; settings
// are kept in memory.
#pragma once
#include "platform/settings_store/settings_store.h"
#include "tests/app/main_view_fixture.h"

class LineSurveyFixture : protected MainViewFixture {
 protected:
  void open_line_survey() {
    make_folder();
    std::filesystem::current_path(folder_->folder());
    (*interface_)->events = [] { QCoreApplication::processEvents(); };
    earlier_store_ = install_settings_store(std::make_unique<MemorySettingsStore>());
    make_survey();
    made::store_line(3);
    dao::Recordset& files = Module_database::open_survey().files;
    files.add_new();
    files.set_text("LineNumber", "200E");
    files.set_long("ReferenceType", 0);
    files.set_single("DipoleLength", 50.0F);
    files.update();
    show_survey();
  }
  void close_line_survey() {
    close_survey();
    install_settings_store(std::move(earlier_store_));
  }

 private:
  std::unique_ptr<SettingsStore> earlier_store_;
};
