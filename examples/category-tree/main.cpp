// SPDX-License-Identifier: Apache-2.0
// The smallest host on Qt: shows the category tree of a system root, one level opened.
//     category-tree SYSTEM-ROOT [--print]
// With --print it names the number of items instead of showing them.
#include <QApplication>
#include <iostream>
#include <string>

#include <KYCollisionBase/KYCollisionBase.h>
#include <KYCollisionBase/ui/widgets/KyCustomTreeCtrl.h>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    if (argc < 2) {
        std::cerr << "usage: category-tree SYSTEM-ROOT [--print]\n";
        return 2;
    }
    // Before anything asks for categories: the file is read once.
    BASETOOLS::SetSysRoot(QString::fromLocal8Bit(argv[1]).toStdWString());

    KyCustomTreeCtrl tree;
    KYCOLLISION::MODEL::KyEntityCategoryMgr::GetInstance()->InitTreeControl(&tree, nullptr,
                                                                            nullptr);
    tree.ExpandByLevel(true);
    if (argc > 2 && std::string(argv[2]) == "--print") {
        std::cout << "items: " << tree.GetCount() << '\n';
        return 0;
    }
    tree.resize(400, 600);
    tree.show();
    return QApplication::exec();
}
