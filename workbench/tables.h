// How the workbench's tables look.
#pragma once

class QTableView;

namespace zrworkbench {

/// Lines of one height that are read and selected as a whole; the last column takes what is left.
void makeList(QTableView& table);

} // namespace zrworkbench
