#include "common/program_entry.h"

#include <exception>
#include <new>
#include <string>

#include "common/fatal_error.h"

namespace pelkrin {

int run_guarded(std::string_view program, std::ostream& err, const std::function<int()>& body) {
    const std::string name(program);
    try {
        return body();
    } catch (const fatal_error& e) {
        err << e.message() << std::flush;
        return e.status();
    } catch (const std::bad_alloc&) {
        err << name << ": out of memory" << std::endl;
    } catch (const std::exception& e) {
        err << name << ": " << e.what() << std::endl;
    } catch (...) {
        err << name << ": unexpected error" << std::endl;
    }
    return 1;
}

}  // namespace pelkrin
