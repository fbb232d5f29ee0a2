#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// A file in INI form and one of its sections, read through the system's profile functions. Every read goes
/// to the file. A member that needs a section, called while none is registered, shows a message, touches no
/// file and gives the empty string, 0 or false.
class clsIniFile {
 public:
  /// Starts on a file beside the component that bears the component's name; the section "General" is
  /// registered only once a file or a section has been set.
  clsIniFile();

  /// The last path set through FullPath.
  [[nodiscard]] std::string PrivPath() const { return PrivPath_; }

  /// Takes the path as it is; the section counts as registered when its name isn't blank.
  void FullPath(const std::string& NewPath);
  [[nodiscard]] std::string FullPath() const { return FullPath_; }

  /// The section's name without brackets; a blank one registers none.
  void SectionName(const std::string& SetSection);
  [[nodiscard]] std::string SectionName() const { return SectionName_; }

  /// The folder without a closing backslash, and what stands behind the first dot of the file's name.
  [[nodiscard]] std::string FilePath() const { return FilePath_; }
  [[nodiscard]] std::string FileExt() const { return FileExt_; }

  /// The file's name in `PathIn` (empty: FullPath); of it with choice 1 what stands before its first dot,
  /// with choice 2 what stands behind it. A name without a dot is given whole, whatever the choice.
  [[nodiscard]] std::string ExtractName(const std::string& PathIn, std::int32_t RetChoice) const;
  /// The folder of `PathIn` (empty: FullPath), the current one where it names none.
  [[nodiscard]] std::string ExtractPath(const std::string& PathIn) const;

  /// Needs a section. The entry's value, at most 254 bytes of the code page; an entry that is there and empty
  /// gives the empty string, a missing one the default.
  [[nodiscard]] std::string GetString(const std::string& EntryName, const std::string& DefaultStr) const;

  /// The file's name without folder and extension; what is set is a whole path, as with FullPath.
  [[nodiscard]] std::string FileName() const { return FileName_; }
  void FileName(const std::string& newFileName) { FullPath(newFileName); }

 private:
  /// Whether a section is registered; tells the user when not.
  [[nodiscard]] bool has_section() const;

  std::string SectionName_;
  std::string FileName_;
  std::string FilePath_;
  std::string FullPath_;
  std::string PrivPath_;
  std::string FileExt_;
  bool Registered_ = false;
  bool UseWinINI_ = false;
};
