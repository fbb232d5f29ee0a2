#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A file in INI form and one of its sections, read and written through the system's profile functions. Every
/// call goes to the file. A member that needs a section, called while none is registered, shows a message,
/// touches no file and gives the empty string, 0 or false. A list of texts is one string in which each of
/// them is ended by a NUL and the whole by one more.
class clsIniFile {
 public:
  /// An entry as a row: the key, the value.
  using Rows = std::vector<std::array<std::string, 2>>;

  /// Starts on a file beside the component that bears the component's name; the section "General" is
  /// registered only once a file or a section has been set.
  clsIniFile();

  /// The last path set through FullPath; the one to go back to from the system-wide profile.
  [[nodiscard]] std::string PrivPath() const { return PrivPath_; }

  /// True: the system-wide profile instead of the file in PrivPath.
  void UseWinINI(bool bChoice);
  [[nodiscard]] bool UseWinINI() const { return UseWinINI_; }

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

  /// Needs a section. The key stays, with nothing behind its equals sign.
  void DeleteStrEntry(const std::string& EntryName);
  /// Needs a section. The key goes; in the system-wide profile it becomes "0".
  void DeleteNumEntry(const std::string& EntryName);
  /// Needs a section. Its entries go, its header stays; no section is registered afterwards.
  void DeleteSection();

  /// -1 when a file matches `filname`, else 0; a name without any "." stands for every extension. Where the
  /// look-up fails the user is told, and the result is 0.
  [[nodiscard]] std::int16_t Exists(const std::string& filname) const;

  /// Needs a section. The number at the start of the value; throws Failure(overflow) beyond 16 bits.
  [[nodiscard]] std::int16_t GetInt(const std::string& EntryName, std::int16_t DefaultInt) const;

  /// Needs a section. Its entries as a list of key=value, cut at 4096 bytes of the code page; one NUL for
  /// none.
  [[nodiscard]] std::string GetSectEntries() const;
  /// Needs a section. The same as rows; gives their number.
  std::int16_t GetSectEntriesEx(Rows& DataArry) const;

  /// Needs a section. The names of all sections as a list, two NULs for none; throws Failure for a file that
  /// can't be read. A header has nothing but a comment behind it.
  [[nodiscard]] std::string GetSections() const;
  /// The same name by name; gives their number, throws Failure(overflow) beyond 16 bits.
  std::int16_t GetSectionsEx(std::vector<std::string>& DataArry) const;

  /// Needs a section. The entry's value, at most 254 bytes of the code page; an entry that is there and empty
  /// gives the empty string, a missing one the default.
  [[nodiscard]] std::string GetString(const std::string& EntryName, const std::string& DefaultStr) const;

  /// Needs a section. Whether the value is "yes", "y", "true", "t", "on", "1" or "-1"; the default counts
  /// only for a missing entry.
  [[nodiscard]] bool GetTF(const std::string& EntryName, std::int16_t DefaultInt) const;

  /// Needs a section. Forces buffered writes of the file out.
  void FlushCache();

  /// The entry's value in the file and section that are given (in the file of UseWinINI, where that is set):
  /// with `ReadNumber` its number as text, `DefaultInt` where there is none, else its text or `DefaultStr`.
  /// `ReturnStr` has no meaning.
  [[nodiscard]] std::string IniRead(const std::string& SectionName, const std::string& EntryName,
                                    std::int16_t DefaultInt, const std::string& DefaultStr,
                                    const std::string& ReturnStr, bool ReadNumber,
                                    const std::string& FullPath) const;
  /// Writes an entry of the file and section that are given (of the file of UseWinINI, where that is set).
  void IniWrite(const std::string& SectionName, const std::string& EntryName, const std::string& NewVal,
                const std::string& FullPath);

  /// Need a section; not 0, or true, when the entry has been written. PutTF writes "True" or "False".
  std::int16_t PutInt(const std::string& EntryName, std::int16_t IntValue);
  std::int16_t PutString(const std::string& EntryName, const std::string& StrValue);
  bool PutTF(const std::string& EntryName, std::int16_t IntValue);

  /// Whether GetSections has that name, regardless of case.
  [[nodiscard]] bool SectExist(const std::string& SectionName) const;

  /// The file's name without folder and extension; what is set is a whole path, as with FullPath.
  [[nodiscard]] std::string FileName() const { return FileName_; }
  void FileName(const std::string& newFileName) { FullPath(newFileName); }

  /// Need a section; replace its entries and say whether that was written. All rows are taken.
  bool SetSectEntriesEx(const Rows& DataArry);
  bool SetSectEntries(const std::string& Section);

 private:
  /// Whether a section is registered; tells the user when not.
  [[nodiscard]] bool has_section() const;
  /// The file that is read and written.
  [[nodiscard]] std::string profile() const;
  void take_path(const std::string& path);

  std::string SectionName_;
  std::string FileName_;
  std::string FilePath_;
  std::string FullPath_;
  std::string PrivPath_;
  std::string FileExt_;
  bool Registered_ = false;
  bool UseWinINI_ = false;
};
