// StepPictureWriter: a run recorded as numbered PNG pictures in one folder, picture N as
// "step-NNNNNN.png" (six digits, zero-padded: number 0 shows the graph before the run, N the
// graph after step N), so that the files sort in order and `ffmpeg -i DIR/step-%06d.png` reads
// them as a video. The command line's `run --frames` and the interpreter frame's recording
// both write through it.
//
// It never replaces a file: it refuses a folder that already holds any "step-*.png", so that
// two recordings never mix, and a picture whose file exists. Other files in the folder are
// left alone.
#pragma once

#include <optional>
#include <string>

#include "tpx/TPXimage.h"

namespace vellum {

class StepPictureWriter {
  public:
    static constexpr int kLastNumber = 999999;  // the largest six digits hold

    // "step-000042.png" for 42.
    static std::string fileName(int number);
    // Whether `name` (a file name without folder) is one a recording may have written: it
    // begins with "step-" and ends with ".png".
    static bool isPictureName(const std::string& name);

    // Takes `folder` for a new recording, creating it and its missing parents. None, with the
    // reason in `error`, when it is no folder, cannot be created or written to, or already
    // holds pictures of a recording.
    static std::optional<StepPictureWriter> open(const std::string& folder, std::string& error);

    const std::string& folder() const { return m_folder; }
    // The file of picture `number`.
    std::string path(int number) const;
    // Writes `picture` (a complete colour image) as picture `number`. False, with the reason in
    // `error`, when the number is outside 0..kLastNumber, its file exists, or the file cannot be
    // written (then nothing is left of it).
    bool write(int number, const TPXimage& picture, std::string& error) const;

  private:
    explicit StepPictureWriter(std::string folder) : m_folder(std::move(folder)) {}

    std::string m_folder;
};

}  // namespace vellum
