include(${CMAKE_CURRENT_LIST_DIR}/BorrowHeaders.cmake)
vantor_borrow_headers(CLI11::CLI11 CLI)
set(CLI11_FOUND TRUE)
