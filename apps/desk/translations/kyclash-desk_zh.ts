<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh" sourcelanguage="en">
<context>
    <name>CommandLine</name>
    <message>
        <source>Finds and manages clashes in building models.</source>
        <translation>查找并管理建筑模型中的碰撞。</translation>
    </message>
    <message>
        <source>Open saved results with their models.</source>
        <translation>打开已保存的结果及其模型。</translation>
    </message>
    <message>
        <source>Rule file; &quot;built-in&quot; for the rules that need no file.</source>
        <translation>规则文件；“built-in”表示无需文件的内置规则。</translation>
    </message>
    <message>
        <source>Folder of the category tree and the priorities.</source>
        <translation>类别树与优先级所在的文件夹。</translation>
    </message>
    <message>
        <source>Mapping file for the kinds of elements.</source>
        <translation>构件类别的映射文件。</translation>
    </message>
    <message>
        <source>Folder for converted models.</source>
        <translation>存放已转换模型的文件夹。</translation>
    </message>
    <message>
        <source>IFC models to open.</source>
        <translation>要打开的 IFC 模型。</translation>
    </message>
</context>
<context>
    <name>State</name>
    <message>
        <source>Open</source>
        <translation>未处理</translation>
    </message>
    <message>
        <source>Assigned</source>
        <translation>已分派</translation>
    </message>
    <message>
        <source>Resolved</source>
        <translation>已解决</translation>
    </message>
    <message>
        <source>Accepted</source>
        <translation>已接受</translation>
    </message>
    <message>
        <source>State %1</source>
        <translation>状态 %1</translation>
    </message>
</context>
<context>
    <name>ToolActions</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
</context>
<context>
    <name>desk::DetailPane</name>
    <message>
        <source>height %1</source>
        <translation>高度 %1</translation>
    </message>
    <message>
        <source>elevation %1 mm</source>
        <translation>标高 %1 mm</translation>
    </message>
    <message>
        <source>Select a clash to see its two components here.</source>
        <translation>选择一个碰撞，即可在此查看其两个构件。</translation>
    </message>
</context>
<context>
    <name>desk::FilterBar</name>
    <message>
        <source>Floor</source>
        <translation>楼层</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>类别</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>above mm</source>
        <translation>高于 mm</translation>
    </message>
    <message>
        <source>up to mm</source>
        <translation>不高于 mm</translation>
    </message>
    <message>
        <source>Search name, kind, axis, remark (Ctrl+F)</source>
        <translation>搜索名称、类别、轴线、备注 (Ctrl+F)</translation>
    </message>
    <message>
        <source>Search results</source>
        <translation>搜索结果</translation>
    </message>
    <message>
        <source>Show all</source>
        <translation>全部显示</translation>
    </message>
    <message>
        <source>Take all filters away</source>
        <translation>清除所有筛选条件</translation>
    </message>
    <message>
        <source>All floors</source>
        <translation>所有楼层</translation>
    </message>
    <message>
        <source>All kinds</source>
        <translation>所有类别</translation>
    </message>
    <message>
        <source>All states</source>
        <translation>所有状态</translation>
    </message>
</context>
<context>
    <name>desk::KindTree</name>
    <message>
        <source>Kinds that take part</source>
        <translation>参与检查的类别</translation>
    </message>
    <message>
        <source>All kinds</source>
        <translation>所有类别</translation>
    </message>
</context>
<context>
    <name>desk::MainWindow</name>
    <message>
        <source>Open models</source>
        <translation>打开模型</translation>
    </message>
    <message>
        <source>Open IFC models; several are one building</source>
        <translation>打开 IFC 模型；多个模型合为一栋建筑</translation>
    </message>
    <message>
        <source>Open results</source>
        <translation>打开结果</translation>
    </message>
    <message>
        <source>Open saved results with their models</source>
        <translation>打开已保存的结果及其模型</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Save the results</source>
        <translation>保存结果</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>另存为</translation>
    </message>
    <message>
        <source>Save the results in another file</source>
        <translation>将结果保存到另一个文件</translation>
    </message>
    <message>
        <source>Rules</source>
        <translation>规则</translation>
    </message>
    <message>
        <source>Choose the rule file of the next check</source>
        <translation>选择下次检查所用的规则文件</translation>
    </message>
    <message>
        <source>Run check</source>
        <translation>运行检查</translation>
    </message>
    <message>
        <source>Check the chosen kinds on the chosen floors</source>
        <translation>检查所选楼层上的所选类别</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Stop what is going on</source>
        <translation>停止正在进行的操作</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>查找</translation>
    </message>
    <message>
        <source>Search the results</source>
        <translation>搜索结果</translation>
    </message>
    <message>
        <source>Main</source>
        <translation>主工具栏</translation>
    </message>
    <message>
        <source>Clashes</source>
        <translation>碰撞</translation>
    </message>
    <message>
        <source>Openings</source>
        <translation>洞口</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The next check uses the rules %1</source>
        <translation>下次检查使用规则 %1</translation>
    </message>
    <message>
        <source>Which models are these results of?</source>
        <translation>这些结果属于哪些模型？</translation>
    </message>
    <message>
        <source>Saved to %1</source>
        <translation>已保存到 %1</translation>
    </message>
    <message>
        <source>Save results</source>
        <translation>保存结果</translation>
    </message>
    <message>
        <source>Stopping ...</source>
        <translation>正在停止……</translation>
    </message>
    <message>
        <source>Models: %L1, components: %L2</source>
        <translation>模型：%L1，构件：%L2</translation>
    </message>
    <message>
        <source>Stopped: no models were opened</source>
        <translation>已停止：未打开任何模型</translation>
    </message>
    <message>
        <source>The models could not be opened</source>
        <translation>无法打开模型</translation>
    </message>
    <message>
        <source>Check done, clashes: %L1</source>
        <translation>检查完成，碰撞：%L1</translation>
    </message>
    <message>
        <source>Check stopped: the list is not complete</source>
        <translation>检查已停止：列表不完整</translation>
    </message>
    <message>
        <source>The check could not be done</source>
        <translation>无法进行检查</translation>
    </message>
    <message>
        <source>Notes (%L1)</source>
        <translation>提示 (%L1)</translation>
    </message>
    <message>
        <source>This view is kept with the clash</source>
        <translation>已为该碰撞保留此视图</translation>
    </message>
    <message>
        <source>Results read, clashes: %L1</source>
        <translation>结果已读取，碰撞：%L1</translation>
    </message>
    <message>
        <source>Stopped: no results were opened</source>
        <translation>已停止：未打开结果</translation>
    </message>
    <message>
        <source>The results could not be opened</source>
        <translation>无法打开结果</translation>
    </message>
</context>
<context>
    <name>desk::NotesPane</name>
    <message>
        <source>Nothing to say about the models and the rules.</source>
        <translation>模型和规则没有需要说明的内容。</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>not checked, for want of a rule: %1 (%L2)</source>
        <translation>因没有规则而未检查：%1 (%L2)</translation>
    </message>
    <message>
        <source>switched off by its rule: %1 (%L2)</source>
        <translation>被规则关闭：%1 (%L2)</translation>
    </message>
    <message>
        <source>Models</source>
        <translation>模型</translation>
    </message>
    <message>
        <source>Last check, with the rules %1</source>
        <translation>上次检查，所用规则：%1</translation>
    </message>
    <message>
        <source>an opening: listed, not checked</source>
        <translation>洞口：只列出，不检查</translation>
    </message>
    <message>
        <source>an opening that a door, a window or the like stands for</source>
        <translation>由门、窗等代表的洞口</translation>
    </message>
    <message>
        <source>an assembly: checked through its parts</source>
        <translation>组合件：按其组成部分检查</translation>
    </message>
    <message>
        <source>no body: space, storey, annotation, grid, port or the like</source>
        <translation>无实体：空间、楼层、标注、轴网、端口等</translation>
    </message>
    <message>
        <source>the file gives it no body</source>
        <translation>文件中没有其实体</translation>
    </message>
    <message>
        <source>its body has no triangles</source>
        <translation>其实体没有三角面</translation>
    </message>
    <message>
        <source>its body could not be read</source>
        <translation>无法读取其实体</translation>
    </message>
    <message>
        <source>left out by the mapping</source>
        <translation>映射中已排除</translation>
    </message>
    <message>
        <source>no rule of the mapping matches</source>
        <translation>没有匹配的映射规则</translation>
    </message>
    <message>
        <source>not checked: %L1 (%2)</source>
        <translation>未检查：%L1（%2）</translation>
    </message>
    <message>
        <source>no mapping rule for %L1 x %2, as %3</source>
        <translation>没有映射规则：%L1 个 %2，例如 %3</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
</context>
<context>
    <name>desk::OpeningList</name>
    <message>
        <source>Floor</source>
        <translation>楼层</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>类别</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>尺寸</translation>
    </message>
    <message>
        <source>Elevation</source>
        <translation>标高</translation>
    </message>
    <message>
        <source>Openings</source>
        <translation>洞口</translation>
    </message>
</context>
<context>
    <name>desk::Prompts</name>
    <message>
        <source>Unsaved results</source>
        <translation>未保存的结果</translation>
    </message>
    <message>
        <source>The results have changed since they were last saved.</source>
        <translation>结果自上次保存后已更改。</translation>
    </message>
    <message>
        <source>Save them first?</source>
        <translation>要先保存吗？</translation>
    </message>
    <message>
        <source>IFC models (*.ifc *.ifczip)</source>
        <translation>IFC 模型 (*.ifc *.ifczip)</translation>
    </message>
    <message>
        <source>Open results</source>
        <translation>打开结果</translation>
    </message>
    <message>
        <source>Clash results (*.xml)</source>
        <translation>碰撞结果 (*.xml)</translation>
    </message>
    <message>
        <source>Choose rules</source>
        <translation>选择规则</translation>
    </message>
    <message>
        <source>Rule files (*.xml)</source>
        <translation>规则文件 (*.xml)</translation>
    </message>
    <message>
        <source>Save results</source>
        <translation>保存结果</translation>
    </message>
    <message>
        <source>Export drawing</source>
        <translation>导出图形</translation>
    </message>
    <message>
        <source>glTF scenes (*.gltf)</source>
        <translation>glTF 场景 (*.gltf)</translation>
    </message>
</context>
<context>
    <name>desk::ResultList</name>
    <message>
        <source>Results</source>
        <translation>结果</translation>
    </message>
</context>
<context>
    <name>desk::ResultModel</name>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Floor</source>
        <translation>楼层</translation>
    </message>
    <message>
        <source>Main kind</source>
        <translation>主构件类别</translation>
    </message>
    <message>
        <source>Main component</source>
        <translation>主构件</translation>
    </message>
    <message>
        <source>Second kind</source>
        <translation>次构件类别</translation>
    </message>
    <message>
        <source>Second component</source>
        <translation>次构件</translation>
    </message>
    <message>
        <source>Main height</source>
        <translation>主构件高度</translation>
    </message>
    <message>
        <source>Second height</source>
        <translation>次构件高度</translation>
    </message>
    <message>
        <source>Axis position</source>
        <translation>轴线位置</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>备注</translation>
    </message>
</context>
<context>
    <name>desk::ResultPane</name>
    <message>
        <source>Clashes: &lt;b&gt;%L1&lt;/b&gt;</source>
        <translation>碰撞：&lt;b&gt;%L1&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Clashes: &lt;b&gt;%L1&lt;/b&gt; of %L2</source>
        <translation>碰撞：&lt;b&gt;%L1&lt;/b&gt; / %L2</translation>
    </message>
    <message>
        <source>No clash passes the filters.</source>
        <translation>没有碰撞符合筛选条件。</translation>
    </message>
    <message>
        <source>No clashes were found.</source>
        <translation>没有发现碰撞。</translation>
    </message>
    <message>
        <source>Choose what to check on the left, and run the check.</source>
        <translation>请在左侧选择检查范围，然后运行检查。</translation>
    </message>
    <message>
        <source>Open models, or the results of an earlier check.</source>
        <translation>请打开模型，或打开以前检查的结果。</translation>
    </message>
</context>
<context>
    <name>desk::ScenePane</name>
    <message>
        <source> mm</source>
        <translation> mm</translation>
    </message>
    <message>
        <source>Height of the section above the floor</source>
        <translation>剖切面距楼面的高度</translation>
    </message>
    <message>
        <source>Fit all</source>
        <translation>显示全部</translation>
    </message>
    <message>
        <source>Show the whole building</source>
        <translation>显示整栋建筑</translation>
    </message>
    <message>
        <source>Fit clash</source>
        <translation>定位碰撞</translation>
    </message>
    <message>
        <source>Keep view</source>
        <translation>保留视图</translation>
    </message>
    <message>
        <source>Remember this view with the selected clash</source>
        <translation>为所选碰撞记住此视图</translation>
    </message>
    <message>
        <source>Section</source>
        <translation>剖切</translation>
    </message>
    <message>
        <source>Cut the building above the floor of the selected clash</source>
        <translation>在所选碰撞所在楼层上方剖切建筑</translation>
    </message>
    <message>
        <source>Export drawing</source>
        <translation>导出图形</translation>
    </message>
    <message>
        <source>%1 cannot be written</source>
        <translation>无法写入 %1</translation>
    </message>
    <message>
        <source>Go to the selected clash or opening</source>
        <translation>转到所选碰撞或洞口</translation>
    </message>
    <message>
        <source>Write the drawing (point and boxes) to a glTF file</source>
        <translation>将图形（碰撞点和包围框）写入 glTF 文件</translation>
    </message>
</context>
<context>
    <name>desk::SceneView</name>
    <message>
        <source>3-D view</source>
        <translation>三维视图</translation>
    </message>
    <message>
        <source>This computer&apos;s graphics cannot show the model (OpenGL 3.3 is needed).</source>
        <translation>此计算机的显卡无法显示模型（需要 OpenGL 3.3）。</translation>
    </message>
    <message>
        <source>Open IFC models to see them here.</source>
        <translation>打开 IFC 模型即可在此查看。</translation>
    </message>
</context>
<context>
    <name>desk::ScopePane</name>
    <message>
        <source>Floors to check</source>
        <translation>要检查的楼层</translation>
    </message>
    <message>
        <source>Open level</source>
        <translation>展开一级</translation>
    </message>
    <message>
        <source>Open the next level of the tree</source>
        <translation>展开树的下一级</translation>
    </message>
    <message>
        <source>Close level</source>
        <translation>收起一级</translation>
    </message>
    <message>
        <source>Close the deepest open level of the tree</source>
        <translation>收起树中最深的已展开级</translation>
    </message>
    <message>
        <source>&lt;b&gt;Kinds to check&lt;/b&gt;</source>
        <translation>&lt;b&gt;要检查的类别&lt;/b&gt;</translation>
    </message>
    <message>
        <source>&lt;b&gt;Floors to check&lt;/b&gt;</source>
        <translation>&lt;b&gt;要检查的楼层&lt;/b&gt;</translation>
    </message>
</context>
<context>
    <name>desk::StatusLine</name>
    <message>
        <source>Reading %1</source>
        <translation>正在读取 %1</translation>
    </message>
    <message>
        <source>Meshing %1</source>
        <translation>正在生成网格 %1</translation>
    </message>
    <message>
        <source>Preparing the 3-D view</source>
        <translation>正在准备三维视图</translation>
    </message>
    <message>
        <source>Finding neighbours</source>
        <translation>正在查找相邻构件</translation>
    </message>
    <message>
        <source>Reading the rules</source>
        <translation>正在读取规则</translation>
    </message>
    <message>
        <source>Checking floor %1</source>
        <translation>正在检查楼层 %1</translation>
    </message>
    <message>
        <source>Collecting results</source>
        <translation>正在汇总结果</translation>
    </message>
</context>
</TS>
