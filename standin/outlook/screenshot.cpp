#include "outlook/screenshot.h"

#include <vector>

namespace standin {
namespace {

bool WriteBitmap(const std::wstring& path, const BITMAPINFOHEADER& info,
                 const std::vector<BYTE>& pixels) {
  BITMAPFILEHEADER header = {};
  header.bfType = 0x4D42;  // "BM"
  header.bfOffBits = sizeof header + sizeof info;
  header.bfSize = header.bfOffBits + static_cast<DWORD>(pixels.size());
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool done =
      WriteFile(file, &header, sizeof header, &written, nullptr) &&
      WriteFile(file, &info, sizeof info, &written, nullptr) &&
      WriteFile(file, pixels.data(), static_cast<DWORD>(pixels.size()), &written, nullptr);
  CloseHandle(file);
  return done;
}

}  // namespace

bool SaveScreenshot(HWND window, const std::wstring& path) {
  RECT place;
  if (!GetWindowRect(window, &place)) return false;
  const int width = place.right - place.left;
  const int height = place.bottom - place.top;
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  bool done = BitBlt(memory, 0, 0, width, height, screen, place.left, place.top, SRCCOPY) != FALSE;
  SelectObject(memory, before);

  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;  // without an alpha channel, which the screen leaves empty
  const std::size_t line = (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
  std::vector<BYTE> pixels(line * static_cast<std::size_t>(height));
  done = done && GetDIBits(screen, bitmap, 0, static_cast<UINT>(height), pixels.data(), &info,
                           DIB_RGB_COLORS) == height;
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return done && WriteBitmap(path, info.bmiHeader, pixels);
}

}  // namespace standin
