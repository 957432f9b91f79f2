include(${CMAKE_CURRENT_LIST_DIR}/BorrowHeaders.cmake)
vantor_borrow_headers(nlohmann_json::nlohmann_json nlohmann)
set(nlohmann_json_FOUND TRUE)
