<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko_KR" sourcelanguage="en">
<context>
    <name>AccessDialog</name>
    <message>
        <source>Access rights</source>
        <translation>접근 권한</translation>
    </message>
    <message>
        <source>No user accounts are known: who may open the page stays as it is.</source>
        <translation>사용자 계정 정보가 없어 페이지를 열 수 있는 사용자는 그대로 유지됩니다.</translation>
    </message>
</context>
<context>
    <name>AccountDatabase</name>
    <message>
        <source>A name is needed.</source>
        <translation>이름을 입력해야 합니다.</translation>
    </message>
    <message>
        <source>A name may have %1 characters at most.</source>
        <translation>이름은 최대 %1자까지 사용할 수 있습니다.</translation>
    </message>
    <message>
        <source>A name must not have blanks around it or control characters in it.</source>
        <translation>이름 앞뒤의 공백과 이름 안의 제어 문자는 사용할 수 없습니다.</translation>
    </message>
    <message>
        <source>There is no role &quot;%1&quot;.</source>
        <translation>&quot;%1&quot; 역할이 없습니다.</translation>
    </message>
    <message>
        <source>Each area needs a name.</source>
        <translation>각 책임 구역에는 이름이 있어야 합니다.</translation>
    </message>
    <message>
        <source>A password needs %1 characters at least.</source>
        <translation>비밀번호는 %1자 이상이어야 합니다.</translation>
    </message>
    <message>
        <source>The password is too long.</source>
        <translation>비밀번호가 너무 깁니다.</translation>
    </message>
    <message>
        <source>No database of user accounts is open.</source>
        <translation>열려 있는 사용자 계정 데이터베이스가 없습니다.</translation>
    </message>
    <message>
        <source>User accounts are not given for the query &quot;%1&quot;.</source>
        <translation>질의 &quot;%1&quot;에는 사용자 계정을 제공하지 않습니다.</translation>
    </message>
    <message>
        <source>the areas of user &quot;%1&quot; can&apos;t be read</source>
        <translation>사용자 &quot;%1&quot;의 책임 구역을 읽을 수 없습니다</translation>
    </message>
    <message>
        <source>There is no user &quot;%1&quot;.</source>
        <translation>사용자 &quot;%1&quot;이(가) 없습니다.</translation>
    </message>
    <message>
        <source>There is a user &quot;%1&quot; already.</source>
        <translation>사용자 &quot;%1&quot;이(가) 이미 있습니다.</translation>
    </message>
    <message>
        <source>There is no user number %1.</source>
        <translation>번호가 %1인 사용자가 없습니다.</translation>
    </message>
    <message>
        <source>This is the last administrator who can log on.</source>
        <translation>로그인할 수 있는 마지막 관리자입니다.</translation>
    </message>
    <message>
        <source>%1; the account is as it was</source>
        <translation>%1. 계정은 그대로입니다</translation>
    </message>
</context>
<context>
    <name>AccountDialog</name>
    <message>
        <source>Add user</source>
        <translation>사용자 추가</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>이름(&amp;N):</translation>
    </message>
    <message>
        <source>&amp;Role:</source>
        <translation>역할(&amp;R):</translation>
    </message>
    <message>
        <source>&amp;Areas:</source>
        <translation>책임 구역(&amp;A):</translation>
    </message>
    <message>
        <source>One area a line; none stands for all.</source>
        <translation>한 줄에 책임 구역을 하나씩 입력하십시오. 비워 두면 모든 구역입니다.</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>비밀번호(&amp;P):</translation>
    </message>
    <message>
        <source>Password a&amp;gain:</source>
        <translation>비밀번호 확인(&amp;G):</translation>
    </message>
    <message>
        <source>Change user</source>
        <translation>사용자 변경</translation>
    </message>
    <message>
        <source>Set password</source>
        <translation>비밀번호 설정</translation>
    </message>
</context>
<context>
    <name>AccountRole</name>
    <message>
        <source>Viewer</source>
        <translation>열람자</translation>
    </message>
    <message>
        <source>Operator</source>
        <translation>운전원</translation>
    </message>
    <message>
        <source>Supervisor</source>
        <translation>감독자</translation>
    </message>
    <message>
        <source>Engineer</source>
        <translation>엔지니어</translation>
    </message>
    <message>
        <source>Administrator</source>
        <translation>관리자</translation>
    </message>
</context>
<context>
    <name>AccountsDialog</name>
    <message>
        <source>Users</source>
        <translation>사용자</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>번호</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>이름</translation>
    </message>
    <message>
        <source>Role</source>
        <translation>역할</translation>
    </message>
    <message>
        <source>Areas</source>
        <translation>책임 구역</translation>
    </message>
    <message>
        <source>State</source>
        <translation>상태</translation>
    </message>
    <message>
        <source>&amp;Add...</source>
        <translation>추가(&amp;A)...</translation>
    </message>
    <message>
        <source>&amp;Change...</source>
        <translation>변경(&amp;C)...</translation>
    </message>
    <message>
        <source>Set &amp;password...</source>
        <translation>비밀번호 설정(&amp;P)...</translation>
    </message>
    <message>
        <source>&amp;Lock</source>
        <translation>잠금(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Remove...</source>
        <translation>제거(&amp;R)...</translation>
    </message>
    <message>
        <source>all</source>
        <translation>모두</translation>
    </message>
    <message>
        <source>locked</source>
        <translation>잠김</translation>
    </message>
    <message>
        <source>Un&amp;lock</source>
        <translation>잠금 해제(&amp;L)</translation>
    </message>
    <message>
        <source>Only an administrator may do that.</source>
        <translation>관리자만 할 수 있는 작업입니다.</translation>
    </message>
    <message>
        <source>Remove user</source>
        <translation>사용자 제거</translation>
    </message>
    <message>
        <source>Remove user &quot;%1&quot;? A new user of that name would be another one.</source>
        <translation>사용자 &quot;%1&quot;을(를) 제거하시겠습니까? 나중에 같은 이름으로 추가한 사용자는 다른 사용자로 취급됩니다.</translation>
    </message>
</context>
<context>
    <name>ActionEditor</name>
    <message>
        <source>Tags</source>
        <translation>태그</translation>
    </message>
</context>
<context>
    <name>AlarmAnnunciator</name>
    <message>
        <source>There is no sound device: alarms are shown, not heard</source>
        <translation>소리 장치가 없어 경보가 소리 없이 표시만 됩니다</translation>
    </message>
    <message>
        <source>%1: there is no such sound file; alarms of severity %2 are shown, not heard</source>
        <translation>%1: 소리 파일이 없어 심각도 %2 경보가 소리 없이 표시만 됩니다</translation>
    </message>
    <message>
        <source>%1: can&apos;t be played; alarms of severity %2 are shown, not heard</source>
        <translation>%1: 재생할 수 없어 심각도 %2 경보가 소리 없이 표시만 됩니다</translation>
    </message>
</context>
<context>
    <name>AlarmBanner</name>
    <message>
        <source>Alarms</source>
        <translation>경보</translation>
    </message>
    <message>
        <source>Ac&amp;knowledge</source>
        <translation>경보 확인(&amp;K)</translation>
    </message>
    <message>
        <source>S&amp;ilence</source>
        <translation>소리 끄기(&amp;I)</translation>
    </message>
    <message>
        <source>A&amp;larms...</source>
        <translation>경보 목록(&amp;L)...</translation>
    </message>
    <message>
        <source>S%1: %2</source>
        <comment>severity and number of alarms</comment>
        <translation>심각도 %1: %2</translation>
    </message>
    <message>
        <source>No alarm waits.</source>
        <translation>확인할 경보가 없습니다.</translation>
    </message>
    <message>
        <source>%1  %2  %3</source>
        <comment>time, tag and message</comment>
        <translation>%1  %2  %3</translation>
    </message>
</context>
<context>
    <name>AlarmFilterBar</name>
    <message>
        <source>Sever&amp;ities</source>
        <translation>심각도(&amp;S)</translation>
    </message>
    <message>
        <source>Ar&amp;eas</source>
        <translation>책임 구역(&amp;G)</translation>
    </message>
    <message>
        <source>no area</source>
        <translation>구역 없음</translation>
    </message>
    <message>
        <source>S&amp;tates</source>
        <translation>상태(&amp;T)</translation>
    </message>
    <message>
        <source>standing</source>
        <translation>현재 경보</translation>
    </message>
    <message>
        <source>shelved</source>
        <translation>보류</translation>
    </message>
    <message>
        <source>suppressed, out of service</source>
        <translation>억제, 서비스 중지</translation>
    </message>
    <message>
        <source>Search in tags and messages</source>
        <translation>태그와 메시지에서 찾기</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>찾기</translation>
    </message>
    <message>
        <source>Only the user&apos;s own</source>
        <translation>사용자의 책임 구역만</translation>
    </message>
</context>
<context>
    <name>AlarmListModel</name>
    <message>
        <source>Severity</source>
        <translation>심각도</translation>
    </message>
    <message>
        <source>Raised</source>
        <translation>발생 시각</translation>
    </message>
    <message>
        <source>State</source>
        <translation>상태</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>책임 구역</translation>
    </message>
    <message>
        <source>Tag</source>
        <translation>태그</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>메시지</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>값</translation>
    </message>
    <message>
        <source>Limit</source>
        <translation>한계값</translation>
    </message>
    <message>
        <source>Cause</source>
        <translation>원인</translation>
    </message>
    <message>
        <source>Returned</source>
        <translation>복귀 시각</translation>
    </message>
    <message>
        <source>Acknowledged</source>
        <translation>확인 시각</translation>
    </message>
    <message>
        <source>Acknowledged by</source>
        <translation>확인한 사용자</translation>
    </message>
    <message>
        <source>Shelved until</source>
        <translation>보류 종료 시각</translation>
    </message>
    <message>
        <source>Shelved by</source>
        <translation>보류한 사용자</translation>
    </message>
    <message>
        <source>Shelved: %1</source>
        <translation>보류 사유: %1</translation>
    </message>
    <message>
        <source>Suppressed: %1</source>
        <translation>억제 사유: %1</translation>
    </message>
    <message>
        <source>Out of service: %1</source>
        <translation>서비스 중지 사유: %1</translation>
    </message>
</context>
<context>
    <name>AlarmListWindow</name>
    <message>
        <source>Alarms</source>
        <translation>경보</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>이력</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>what it does (keys)</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Silence</source>
        <translation>소리 끄기</translation>
    </message>
    <message>
        <source>End the sound</source>
        <translation>울리는 경보음 끄기</translation>
    </message>
    <message>
        <source>Go to page</source>
        <translation>페이지로 이동</translation>
    </message>
    <message>
        <source>Show the page of the alarm</source>
        <translation>경보가 있는 페이지 표시</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>내보내기...</translation>
    </message>
    <message>
        <source>Write what is shown to a file</source>
        <translation>표시된 내용을 파일로 저장</translation>
    </message>
    <message>
        <source>Acknowledge</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>Acknowledge the alarms selected</source>
        <translation>선택한 경보 확인</translation>
    </message>
    <message>
        <source>Acknowledge page</source>
        <translation>페이지 경보 확인</translation>
    </message>
    <message>
        <source>Acknowledge every alarm of the page in front</source>
        <translation>앞에 있는 페이지의 모든 경보 확인</translation>
    </message>
    <message>
        <source>Acknowledge all</source>
        <translation>모두 확인</translation>
    </message>
    <message>
        <source>Acknowledge every alarm that the list shows</source>
        <translation>목록에 표시된 모든 경보 확인</translation>
    </message>
    <message>
        <source>Shelve...</source>
        <translation>보류...</translation>
    </message>
    <message>
        <source>Put the alarms selected away for a time</source>
        <translation>선택한 경보를 일정 시간 동안 보류</translation>
    </message>
    <message>
        <source>Unshelve</source>
        <translation>보류 해제</translation>
    </message>
    <message>
        <source>End the shelving of the alarms selected</source>
        <translation>선택한 경보의 보류 해제</translation>
    </message>
    <message>
        <source>Out of service...</source>
        <translation>서비스 중지...</translation>
    </message>
    <message>
        <source>Take the objects of the alarms selected out of service</source>
        <translation>선택한 경보의 객체 서비스 중지</translation>
    </message>
    <message>
        <source>Into service</source>
        <translation>서비스 재개</translation>
    </message>
    <message>
        <source>Put the objects of the alarms selected back into service</source>
        <translation>선택한 경보의 객체 서비스 재개</translation>
    </message>
    <message>
        <source>Tool bar</source>
        <translation>도구 모음</translation>
    </message>
    <message>
        <source>Columns...</source>
        <translation>열 선택...</translation>
    </message>
    <message numerus="yes">
        <source>%n alarm(s)</source>
        <translation>
            <numerusform>경보 %n건</numerusform>
        </translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>tag: message</comment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>state: number</comment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>no alarm</source>
        <translation>경보 없음</translation>
    </message>
    <message>
        <source>first: %1 at %2</source>
        <translation>최초 경보: %1 (%2)</translation>
    </message>
    <message numerus="yes">
        <source>%n object(s) suppressed or out of service</source>
        <translation>
            <numerusform>억제 또는 서비스 중지 %n개</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n hidden by the filter</source>
        <translation>
            <numerusform>필터로 숨긴 경보 %n건</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>AlarmLogModel</name>
    <message>
        <source>Time</source>
        <translation>시각</translation>
    </message>
    <message>
        <source>What</source>
        <translation>구분</translation>
    </message>
    <message>
        <source>Severity</source>
        <translation>심각도</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>책임 구역</translation>
    </message>
    <message>
        <source>Tag</source>
        <translation>태그</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>메시지</translation>
    </message>
    <message>
        <source>State</source>
        <translation>상태</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>값</translation>
    </message>
    <message>
        <source>Limit</source>
        <translation>한계값</translation>
    </message>
    <message>
        <source>Cause</source>
        <translation>원인</translation>
    </message>
    <message>
        <source>User</source>
        <translation>사용자</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>사유</translation>
    </message>
    <message>
        <source>Until</source>
        <translation>보류 종료 시각</translation>
    </message>
</context>
<context>
    <name>AlarmLogView</name>
    <message>
        <source>Log</source>
        <translation>이력</translation>
    </message>
    <message>
        <source>From</source>
        <translation>시작 시각</translation>
    </message>
    <message>
        <source>To</source>
        <translation>종료 시각</translation>
    </message>
    <message>
        <source>Up to &amp;now</source>
        <translation>현재까지(&amp;N)</translation>
    </message>
    <message>
        <source>Tag, or a part of it</source>
        <translation>태그 또는 태그의 일부</translation>
    </message>
    <message>
        <source>Tag</source>
        <translation>태그</translation>
    </message>
    <message>
        <source>&amp;Export...</source>
        <translation>내보내기(&amp;E)...</translation>
    </message>
    <message>
        <source>&amp;From</source>
        <translation>시작(&amp;F)</translation>
    </message>
    <message>
        <source>T&amp;o</source>
        <translation>종료(&amp;O)</translation>
    </message>
    <message numerus="yes">
        <source>%n line(s)</source>
        <translation>
            <numerusform>이력 %n건</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>AlarmPopup</name>
    <message>
        <source>Alarm</source>
        <translation>경보</translation>
    </message>
    <message>
        <source>&amp;Acknowledge</source>
        <translation>경보 확인(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Go to page</source>
        <translation>페이지로 이동(&amp;G)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>닫기(&amp;C)</translation>
    </message>
    <message>
        <source>Severity %1, %2
%3</source>
        <translation>심각도 %1, %2
%3</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>외 %n건</numerusform>
        </translation>
    </message>
    <message>
        <source>Alarm: %1</source>
        <translation>경보: %1</translation>
    </message>
</context>
<context>
    <name>AlarmStation</name>
    <message>
        <source>Alarms</source>
        <translation>경보</translation>
    </message>
    <message>
        <source>No voice for %1: %2; alarms are shown, not spoken</source>
        <translation>%1 음성을 사용할 수 없어 경보가 음성 없이 표시만 됩니다: %2</translation>
    </message>
    <message>
        <source>Alarm &amp;list</source>
        <translation>경보 목록(&amp;L)</translation>
    </message>
    <message>
        <source>Alarm s&amp;ounds</source>
        <translation>경보음(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Popups</source>
        <translation>팝업(&amp;U)</translation>
    </message>
    <message>
        <source>Korean</source>
        <translation>한국어</translation>
    </message>
    <message>
        <source>English</source>
        <translation>영어</translation>
    </message>
    <message>
        <source>Sp&amp;eech</source>
        <translation>음성(&amp;E)</translation>
    </message>
</context>
<context>
    <name>AlarmTable</name>
    <message>
        <source>Usual order</source>
        <translation>기본 순서</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>내보내기</translation>
    </message>
    <message>
        <source>Separated text (*.csv)</source>
        <translation>쉼표로 구분한 텍스트 (*.csv)</translation>
    </message>
</context>
<context>
    <name>AlarmTexts</name>
    <message>
        <source>normal</source>
        <translation>정상</translation>
    </message>
    <message>
        <source>unacknowledged</source>
        <translation>미확인</translation>
    </message>
    <message>
        <source>acknowledged</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>returned unacknowledged</source>
        <translation>복귀 미확인</translation>
    </message>
    <message>
        <source>shelved</source>
        <translation>보류</translation>
    </message>
    <message>
        <source>suppressed</source>
        <translation>억제</translation>
    </message>
    <message>
        <source>out of service</source>
        <translation>서비스 중지</translation>
    </message>
    <message>
        <source>very low</source>
        <translation>하하한 미달</translation>
    </message>
    <message>
        <source>low</source>
        <translation>하한 미달</translation>
    </message>
    <message>
        <source>high</source>
        <translation>상한 초과</translation>
    </message>
    <message>
        <source>very high</source>
        <translation>상상한 초과</translation>
    </message>
    <message>
        <source>abnormal state</source>
        <translation>상태 이상</translation>
    </message>
    <message>
        <source>changes too fast</source>
        <translation>변화율 초과</translation>
    </message>
    <message>
        <source>no usable value</source>
        <translation>유효값 없음</translation>
    </message>
    <message>
        <source>communication failed</source>
        <translation>통신 이상</translation>
    </message>
    <message>
        <source>raised</source>
        <translation>발생</translation>
    </message>
    <message>
        <source>returned</source>
        <translation>복귀</translation>
    </message>
    <message>
        <source>unshelved</source>
        <translation>보류 해제</translation>
    </message>
    <message>
        <source>no longer suppressed</source>
        <translation>억제 해제</translation>
    </message>
    <message>
        <source>taken out of service</source>
        <translation>서비스 중지</translation>
    </message>
    <message>
        <source>put back into service</source>
        <translation>서비스 재개</translation>
    </message>
    <message>
        <source>event</source>
        <translation>이벤트</translation>
    </message>
</context>
<context>
    <name>BindPointDialog</name>
    <message>
        <source>Bind point</source>
        <translation>포인트 바인딩</translation>
    </message>
    <message>
        <source>(one more)</source>
        <translation>(하나 더 추가)</translation>
    </message>
    <message>
        <source>Instead of</source>
        <translation>교체 대상</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>포인트</translation>
    </message>
</context>
<context>
    <name>BindingDock</name>
    <message>
        <source>Binding</source>
        <translation>바인딩</translation>
    </message>
    <message>
        <source>Shows</source>
        <translation>표시</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>명령</translation>
    </message>
</context>
<context>
    <name>BindingEditor</name>
    <message>
        <source>Point</source>
        <translation>포인트</translation>
    </message>
    <message>
        <source>Another curve</source>
        <translation>곡선 추가</translation>
    </message>
    <message>
        <source>This shape shows no value.</source>
        <translation>이 도형은 값을 표시하지 않습니다.</translation>
    </message>
    <message>
        <source>Select a shape, or drop a point on the page.</source>
        <translation>도형을 선택하거나 포인트를 페이지에 끌어다 놓으십시오.</translation>
    </message>
</context>
<context>
    <name>CanvasAccessRightSettingWidget</name>
    <message>
        <source>Security</source>
        <translation>보안</translation>
    </message>
    <message>
        <source>Use Page Permission</source>
        <translation>페이지 권한 사용</translation>
    </message>
    <message>
        <source>Select User</source>
        <translation>사용자 선택</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>모두 선택</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>모두 해제</translation>
    </message>
</context>
<context>
    <name>CanvasOperationSetting</name>
    <message>
        <source>CanvasOperationSetting</source>
        <translation>이벤트 스크립트 설정</translation>
    </message>
    <message>
        <source>Script</source>
        <translation>스크립트</translation>
    </message>
    <message>
        <source>Event Type :</source>
        <translation>이벤트 종류 :</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>지우기</translation>
    </message>
    <message>
        <source>Event Handler :</source>
        <translation>이벤트 처리 함수 :</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
</context>
<context>
    <name>ChangePasswordDialog</name>
    <message>
        <source>Change password</source>
        <translation>비밀번호 변경</translation>
    </message>
    <message>
        <source>User:</source>
        <translation>사용자:</translation>
    </message>
    <message>
        <source>&amp;Old password:</source>
        <translation>현재 비밀번호(&amp;O):</translation>
    </message>
    <message>
        <source>&amp;New password:</source>
        <translation>새 비밀번호(&amp;N):</translation>
    </message>
    <message>
        <source>New password &amp;again:</source>
        <translation>새 비밀번호 확인(&amp;A):</translation>
    </message>
</context>
<context>
    <name>ChoiceButton</name>
    <message>
        <source>All</source>
        <translation>모두</translation>
    </message>
    <message>
        <source>all</source>
        <translation>모두</translation>
    </message>
    <message numerus="yes">
        <source>%n chosen</source>
        <translation>
            <numerusform>%n개 선택</numerusform>
        </translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>what is chosen of: what is chosen</comment>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>ColourAction</name>
    <message>
        <source>Colour</source>
        <translation>색</translation>
    </message>
</context>
<context>
    <name>ControlConfirm</name>
    <message>
        <source>Confirm Control</source>
        <translation>제어 확인</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>명령</translation>
    </message>
    <message>
        <source>.........</source>
        <translation>.........</translation>
    </message>
    <message>
        <source>User Confirm</source>
        <translation>사용자 확인</translation>
    </message>
    <message>
        <source>User :</source>
        <translation>사용자 :</translation>
    </message>
    <message>
        <source>Password :</source>
        <translation>비밀번호 :</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>실패</translation>
    </message>
    <message>
        <source>Invaild Password</source>
        <translation>비밀번호가 올바르지 않습니다</translation>
    </message>
</context>
<context>
    <name>ControlPath</name>
    <message>
        <source>somebody else is logged on by now</source>
        <translation>그사이 다른 사용자가 로그인했습니다</translation>
    </message>
    <message>
        <source>there is nobody here who could confirm</source>
        <translation>여기에는 승인할 수 있는 사람이 없습니다</translation>
    </message>
    <message>
        <source>confirmed without a password</source>
        <translation>비밀번호 없이 승인되었습니다</translation>
    </message>
    <message>
        <source>the operator did not confirm</source>
        <translation>운전원이 승인하지 않았습니다</translation>
    </message>
    <message>
        <source>waits for a second person</source>
        <translation>두 번째 승인자를 기다리는 중입니다</translation>
    </message>
    <message>
        <source>another command to this object is under way</source>
        <translation>이 객체에 대한 다른 명령이 진행 중입니다</translation>
    </message>
    <message>
        <source>%1 takes no commands</source>
        <translation>%1은(는) 명령을 받지 않습니다</translation>
    </message>
    <message>
        <source>no source takes commands to this object</source>
        <translation>이 객체에 대한 명령을 받는 데이터 소스가 없습니다</translation>
    </message>
    <message>
        <source>the feedback %1 is not known</source>
        <translation>피드백 %1을(를) 알 수 없습니다</translation>
    </message>
    <message>
        <source>the audit log can&apos;t be written</source>
        <translation>감사 로그를 기록할 수 없습니다</translation>
    </message>
    <message>
        <source>the feedback did not show the value in time</source>
        <translation>제한 시간 안에 피드백에서 해당 값이 확인되지 않았습니다</translation>
    </message>
    <message>
        <source>no second person confirmed</source>
        <translation>두 번째 승인자가 승인하지 않았습니다</translation>
    </message>
    <message>
        <source>the session ended</source>
        <translation>세션이 종료되었습니다</translation>
    </message>
    <message numerus="yes">
        <source>%n end(s) of requests are missing in the audit log, from that of %1 (%2) on</source>
        <translation>
            <numerusform>요청 종료 %n건이 감사 로그에 없습니다(%1의 요청(%2)부터)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ControlRules</name>
    <message>
        <source>commands to this object are inhibited</source>
        <translation>이 객체에 대한 명령이 금지되어 있습니다</translation>
    </message>
    <message>
        <source>this command needs a reason</source>
        <translation>이 명령에는 사유가 필요합니다</translation>
    </message>
    <message>
        <source>your role or areas do not permit this</source>
        <translation>사용자의 역할 또는 책임 구역으로는 허용되지 않습니다</translation>
    </message>
    <message>
        <source>you may not operate from the page %1</source>
        <translation>%1 페이지에서는 조작할 수 없습니다</translation>
    </message>
    <message>
        <source>this object takes no commands</source>
        <translation>이 객체는 명령을 받지 않습니다</translation>
    </message>
    <message>
        <source>this value is entered by hand</source>
        <translation>이 값은 수동으로 입력하는 값입니다</translation>
    </message>
    <message>
        <source>this value is not entered by hand</source>
        <translation>이 값은 수동으로 입력하는 값이 아닙니다</translation>
    </message>
    <message>
        <source>this object takes commands without being selected</source>
        <translation>이 객체는 선택하지 않아도 명령을 받습니다</translation>
    </message>
    <message>
        <source>only an analog point takes a setpoint</source>
        <translation>설정값은 아날로그 포인트에만 지정할 수 있습니다</translation>
    </message>
    <message>
        <source>this object takes no steps up and down</source>
        <translation>이 객체는 증가 및 감소 명령을 받지 않습니다</translation>
    </message>
    <message>
        <source>%1 has selected this object</source>
        <translation>%1이(가) 이 객체를 선택한 상태입니다</translation>
    </message>
    <message>
        <source>this object must be selected first</source>
        <translation>이 객체를 먼저 선택해야 합니다</translation>
    </message>
    <message>
        <source>the value is no number</source>
        <translation>값이 숫자가 아닙니다</translation>
    </message>
    <message>
        <source>the present value can&apos;t be relied on</source>
        <translation>현재값을 신뢰할 수 없습니다</translation>
    </message>
    <message>
        <source>the value is no state from 0 to %1</source>
        <translation>값이 0부터 %1까지의 상태가 아닙니다</translation>
    </message>
    <message>
        <source>the value lies below %1</source>
        <translation>값이 %1보다 작습니다</translation>
    </message>
    <message>
        <source>the value lies above %1</source>
        <translation>값이 %1보다 큽니다</translation>
    </message>
    <message>
        <source>the interlock can&apos;t be read: %1</source>
        <translation>인터록을 해석할 수 없습니다: %1</translation>
    </message>
    <message>
        <source>interlocked: %1</source>
        <translation>인터록: %1</translation>
    </message>
</context>
<context>
    <name>ControlSystem</name>
    <message>
        <source>Log on to open this page.</source>
        <translation>이 페이지를 열려면 로그인하십시오.</translation>
    </message>
    <message>
        <source>%1 may not open this page.</source>
        <translation>%1은(는) 이 페이지를 열 수 없습니다.</translation>
    </message>
    <message>
        <source>%1; no commands are sent</source>
        <translation>%1; 명령을 보내지 않습니다</translation>
    </message>
    <message>
        <source>What operators do is not kept: no commands are sent</source>
        <translation>운전원의 조작이 보관되지 않으므로 명령을 보내지 않습니다</translation>
    </message>
</context>
<context>
    <name>DatabaseManager</name>
    <message>
        <source>This project has no user security.</source>
        <translation>이 프로젝트는 사용자 보안을 사용하지 않습니다.</translation>
    </message>
    <message>
        <source>The user name or the password is wrong.</source>
        <translation>사용자 이름 또는 비밀번호가 올바르지 않습니다.</translation>
    </message>
    <message>
        <source>Nobody is logged on.</source>
        <translation>로그인한 사용자가 없습니다.</translation>
    </message>
    <message>
        <source>Too many wrong passwords: try again in %1 s.</source>
        <translation>비밀번호를 너무 많이 잘못 입력했습니다. %1초 후에 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>This user is locked.</source>
        <translation>잠긴 사용자입니다.</translation>
    </message>
    <message>
        <source>the program ended</source>
        <translation>프로그램이 종료되었습니다</translation>
    </message>
    <message>
        <source>user security was turned off</source>
        <translation>사용자 보안이 해제되었습니다</translation>
    </message>
    <message>
        <source>another log-on took its place</source>
        <translation>다른 로그온으로 대체되었습니다</translation>
    </message>
    <message>
        <source>the account was removed or locked</source>
        <translation>계정이 삭제되었거나 잠겼습니다</translation>
    </message>
</context>
<context>
    <name>DesignDocument</name>
    <message>
        <source>Values</source>
        <translation>값</translation>
    </message>
    <message>
        <source>Bind to %1</source>
        <translation>%1에 바인딩</translation>
    </message>
    <message>
        <source>Release from %1</source>
        <translation>%1 바인딩 해제</translation>
    </message>
    <message>
        <source>Add %1</source>
        <translation>%1 추가</translation>
    </message>
    <message>
        <source>Change the operation</source>
        <translation>조작 설정 변경</translation>
    </message>
    <message>
        <source>Change the access rights</source>
        <translation>접근 권한 변경</translation>
    </message>
</context>
<context>
    <name>DesignerWindow</name>
    <message>
        <source>&amp;File</source>
        <translation>파일(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Open page</source>
        <translation>페이지 열기(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>저장(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>끝내기(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>보기(&amp;V)</translation>
    </message>
    <message>
        <source>Zoom to &amp;fit</source>
        <translation>창에 맞추기(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Own size</source>
        <translation>원래 크기(&amp;O)</translation>
    </message>
    <message>
        <source>Zoom &amp;in</source>
        <translation>확대(&amp;I)</translation>
    </message>
    <message>
        <source>Zoom &amp;out</source>
        <translation>축소(&amp;U)</translation>
    </message>
    <message>
        <source>Select the &amp;page</source>
        <translation>페이지 선택(&amp;P)</translation>
    </message>
    <message>
        <source>Designer</source>
        <translation>디자이너</translation>
    </message>
    <message>
        <source>The page can&apos;t be opened: %1</source>
        <translation>페이지를 열 수 없습니다: %1</translation>
    </message>
    <message numerus="yes">
        <source>%n problem(s), the first: </source>
        <translation>
            <numerusform>문제 %n건, 첫 번째: </numerusform>
        </translation>
    </message>
    <message>
        <source>Scripts of %1</source>
        <translation>%1의 스크립트</translation>
    </message>
    <message>
        <source>%1 was changed by someone else since it was opened. Save over that?</source>
        <translation>%1 파일을 연 뒤에 다른 곳에서 변경되었습니다. 덮어쓰시겠습니까?</translation>
    </message>
    <message>
        <source>The page could not be saved: %1</source>
        <translation>페이지를 저장하지 못했습니다: %1</translation>
    </message>
    <message>
        <source>Saved.</source>
        <translation>저장했습니다.</translation>
    </message>
    <message>
        <source>Save the changes of %1?</source>
        <translation>%1의 변경 내용을 저장하시겠습니까?</translation>
    </message>
    <message>
        <source>&amp;Run this project&apos;s scripts...</source>
        <translation>이 프로젝트의 스크립트 실행(&amp;R)...</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>편집(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>실행 취소(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>다시 실행(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Bind point...</source>
        <translation>포인트 바인딩(&amp;B)...</translation>
    </message>
    <message>
        <source>&amp;Page</source>
        <translation>페이지(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Access rights...</source>
        <translation>접근 권한(&amp;A)...</translation>
    </message>
</context>
<context>
    <name>DialogConfirmer</name>
    <message>
        <source>Second person</source>
        <translation>두 번째 승인자</translation>
    </message>
    <message>
        <source>%1

Who confirms this command besides %2?</source>
        <translation>%1

이 명령을 %2 외에 누가 승인합니까?</translation>
    </message>
    <message>
        <source>%1

No other user may confirm this command.</source>
        <translation>%1

이 명령을 승인할 수 있는 다른 사용자가 없습니다.</translation>
    </message>
</context>
<context>
    <name>ExplanationDock</name>
    <message>
        <source>Why does this shape look like this</source>
        <translation>이 도형이 이렇게 보이는 이유</translation>
    </message>
    <message>
        <source>Click a shape.</source>
        <translation>도형을 클릭하십시오.</translation>
    </message>
    <message>
        <source>Copy all</source>
        <translation>모두 복사</translation>
    </message>
</context>
<context>
    <name>FieldListModel</name>
    <message>
        <source>(no field)</source>
        <translation>(필드 없음)</translation>
    </message>
    <message>
        <source>count</source>
        <translation>횟수</translation>
    </message>
    <message>
        <source>state</source>
        <translation>상태</translation>
    </message>
    <message>
        <source>text</source>
        <translation>텍스트</translation>
    </message>
    <message>
        <source>time</source>
        <translation>시각</translation>
    </message>
    <message>
        <source>in the point&apos;s unit</source>
        <translation>포인트 단위</translation>
    </message>
    <message>
        <source>in the point&apos;s unit times hours</source>
        <translation>포인트 단위 × 시간</translation>
    </message>
    <message>
        <source>in seconds</source>
        <translation>초</translation>
    </message>
    <message>
        <source>in percent</source>
        <translation>퍼센트</translation>
    </message>
    <message>
        <source>number</source>
        <translation>숫자</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>필드</translation>
    </message>
    <message>
        <source>Last hour</source>
        <translation>지난 한 시간</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>내용</translation>
    </message>
</context>
<context>
    <name>FileName</name>
    <message>
        <source>A name is needed.</source>
        <translation>이름을 입력해야 합니다.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; begins or ends with a blank.</source>
        <translation>&quot;%1&quot;의 앞이나 뒤에 공백이 있습니다.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has a character that a file&apos;s name can&apos;t have.</source>
        <translation>&quot;%1&quot;에 파일 이름에 사용할 수 없는 문자가 있습니다.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; begins with a dot: the file would be hidden.</source>
        <translation>&quot;%1&quot;이(가) 점으로 시작하여 파일이 숨겨집니다.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a name that some systems keep for themselves.</source>
        <translation>&quot;%1&quot;은(는) 일부 시스템에서 예약한 이름입니다.</translation>
    </message>
    <message>
        <source>The name is longer than %1 bytes.</source>
        <translation>이름이 %1바이트보다 깁니다.</translation>
    </message>
</context>
<context>
    <name>FindDialog</name>
    <message>
        <source>Find</source>
        <translation>찾기</translation>
    </message>
    <message>
        <source>Find &amp;what:</source>
        <translation>찾을 내용(&amp;W):</translation>
    </message>
    <message>
        <source>&amp;Match case</source>
        <translation>대/소문자 구분(&amp;M)</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Return</translation>
    </message>
    <message>
        <source>&amp;Next</source>
        <translation>다음(&amp;N)</translation>
    </message>
    <message>
        <source>Shift+Return</source>
        <translation>Shift+Return</translation>
    </message>
    <message>
        <source>&amp;Previous</source>
        <translation>이전(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>닫기(&amp;C)</translation>
    </message>
</context>
<context>
    <name>FirstAccountDialog</name>
    <message>
        <source>First administrator</source>
        <translation>첫 번째 관리자</translation>
    </message>
    <message>
        <source>This project has user security and no user yet. The first user is its administrator and adds the others.</source>
        <translation>이 프로젝트는 사용자 보안을 사용하지만 아직 사용자가 없습니다. 첫 번째 사용자는 관리자가 되어 다른 사용자를 추가합니다.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>이름(&amp;N):</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>비밀번호(&amp;P):</translation>
    </message>
    <message>
        <source>Password &amp;again:</source>
        <translation>비밀번호 확인(&amp;A):</translation>
    </message>
    <message>
        <source>There is an account by now: ask its user.</source>
        <translation>그사이 계정이 추가되었습니다. 해당 계정의 사용자에게 문의하십시오.</translation>
    </message>
</context>
<context>
    <name>KorvaneScriptorEditor</name>
    <message>
        <source>Compile Script</source>
        <translation>스크립트 컴파일</translation>
    </message>
    <message>
        <source>Open Point Explorer</source>
        <translation>포인트 탐색기 열기</translation>
    </message>
    <message>
        <source>Open File Browser</source>
        <translation>파일 찾아보기</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>찾기</translation>
    </message>
    <message>
        <source>Output: </source>
        <translation>출력: </translation>
    </message>
    <message>
        <source>Select file</source>
        <translation>파일 선택</translation>
    </message>
    <message>
        <source>Canvas File (*.pws);;Sound File (*.wav);;All Files(*.*)</source>
        <translation>페이지 파일 (*.pws);;소리 파일 (*.wav);;모든 파일(*.*)</translation>
    </message>
</context>
<context>
    <name>LevelAction</name>
    <message>
        <source>Fill level</source>
        <translation>채움 높이</translation>
    </message>
</context>
<context>
    <name>LiveSystem</name>
    <message>
        <source>%1 ended</source>
        <translation>%1 종료</translation>
    </message>
    <message>
        <source>%1 started: %2</source>
        <translation>%1 시작: %2</translation>
    </message>
    <message>
        <source>Replay went to %1</source>
        <translation>재생 위치 이동: %1</translation>
    </message>
    <message>
        <source>%1 logged on</source>
        <translation>%1 로그인</translation>
    </message>
    <message>
        <source>%1 logged off</source>
        <translation>%1 로그아웃</translation>
    </message>
</context>
<context>
    <name>LogOnDialog</name>
    <message>
        <source>Log on</source>
        <translation>로그인</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>사용자(&amp;U):</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>비밀번호(&amp;P):</translation>
    </message>
    <message>
        <source>&amp;Log on</source>
        <translation>로그인(&amp;L)</translation>
    </message>
    <message>
        <source>Too many wrong passwords. Try again in %1 s.</source>
        <translation>비밀번호를 너무 많이 잘못 입력했습니다. %1초 후에 다시 시도하십시오.</translation>
    </message>
</context>
<context>
    <name>NewPasswordFields</name>
    <message>
        <source>The password needs %1 characters at least.</source>
        <translation>비밀번호는 %1자 이상이어야 합니다.</translation>
    </message>
    <message>
        <source>The password is too long.</source>
        <translation>비밀번호가 너무 깁니다.</translation>
    </message>
    <message>
        <source>The two passwords differ.</source>
        <translation>두 비밀번호가 일치하지 않습니다.</translation>
    </message>
    <message>
        <source>Short: %1 characters or more are safer.</source>
        <translation>짧은 비밀번호입니다. %1자 이상이 더 안전합니다.</translation>
    </message>
    <message>
        <source>Good length.</source>
        <translation>길이가 적당합니다.</translation>
    </message>
</context>
<context>
    <name>NumberAction</name>
    <message>
        <source>Number</source>
        <translation>숫자</translation>
    </message>
</context>
<context>
    <name>ObjectDock</name>
    <message>
        <source>Objects</source>
        <translation>개체</translation>
    </message>
    <message>
        <source>Filter: name or class</source>
        <translation>필터: 이름 또는 종류</translation>
    </message>
    <message>
        <source>Object</source>
        <translation>개체</translation>
    </message>
    <message>
        <source>Class</source>
        <translation>종류</translation>
    </message>
    <message>
        <source>(no name)</source>
        <translation>(이름 없음)</translation>
    </message>
    <message>
        <source>&quot;%1&quot;</source>
        <translation>&quot;%1&quot;</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>페이지</translation>
    </message>
    <message>
        <source>Layer</source>
        <translation>레이어</translation>
    </message>
    <message numerus="yes">
        <source>%n event(s) with a script</source>
        <translation>
            <numerusform>스크립트가 있는 이벤트 %n개</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ObjectTarget</name>
    <message>
        <source>Current Value</source>
        <translation>현재값</translation>
    </message>
    <message>
        <source>Current Value with Unit</source>
        <translation>현재값(단위 포함)</translation>
    </message>
    <message>
        <source>Point Name</source>
        <translation>포인트 이름</translation>
    </message>
    <message>
        <source>Status Name</source>
        <translation>상태 이름</translation>
    </message>
    <message>
        <source>Station Name</source>
        <translation>스테이션 이름</translation>
    </message>
    <message>
        <source>Full Name</source>
        <translation>전체 이름</translation>
    </message>
    <message>
        <source>On Count in this day</source>
        <translation>금일 ON 횟수</translation>
    </message>
    <message>
        <source>Off Count in this day</source>
        <translation>금일 OFF 횟수</translation>
    </message>
    <message>
        <source>On Duration in this day</source>
        <translation>금일 ON 지속 시간</translation>
    </message>
    <message>
        <source>Off Duration in this day</source>
        <translation>금일 OFF 지속 시간</translation>
    </message>
    <message>
        <source>Total On Count</source>
        <translation>전체 ON 횟수</translation>
    </message>
    <message>
        <source>Total Off Count</source>
        <translation>전체 OFF 횟수</translation>
    </message>
    <message>
        <source>Total On Duration</source>
        <translation>전체 ON 지속 시간</translation>
    </message>
    <message>
        <source>Total Off Duration</source>
        <translation>전체 OFF 지속 시간</translation>
    </message>
    <message>
        <source>On Count in this month</source>
        <translation>금월 ON 횟수</translation>
    </message>
    <message>
        <source>Off Count in this month</source>
        <translation>금월 OFF 횟수</translation>
    </message>
    <message>
        <source>On Duration in this month</source>
        <translation>금월 ON 지속 시간</translation>
    </message>
    <message>
        <source>Off Duration in this month</source>
        <translation>금월 OFF 지속 시간</translation>
    </message>
    <message>
        <source>Time Maximum Value</source>
        <translation>시간 최대값</translation>
    </message>
    <message>
        <source>Time Minimum Value</source>
        <translation>시간 최소값</translation>
    </message>
    <message>
        <source>Time Avarge Value</source>
        <translation>시간 평균값</translation>
    </message>
    <message>
        <source>Time accumulated Value</source>
        <translation>시간 적산값</translation>
    </message>
    <message>
        <source>Time Minimum Time</source>
        <translation>시간 최소값 시각</translation>
    </message>
    <message>
        <source>Time Maximum Time</source>
        <translation>시간 최대값 시각</translation>
    </message>
    <message>
        <source>Today Maximum Value</source>
        <translation>금일 최대값</translation>
    </message>
    <message>
        <source>Today Minimum Value</source>
        <translation>금일 최소값</translation>
    </message>
    <message>
        <source>Today Avarge Value</source>
        <translation>금일 평균값</translation>
    </message>
    <message>
        <source>Today accumulated Value</source>
        <translation>금일 적산값</translation>
    </message>
    <message>
        <source>Today Minimum Time</source>
        <translation>금일 최소값 시각</translation>
    </message>
    <message>
        <source>Today Maximum Time</source>
        <translation>금일 최대값 시각</translation>
    </message>
    <message>
        <source>Month Maximum Value</source>
        <translation>금월 최대값</translation>
    </message>
    <message>
        <source>Month Minimum Value</source>
        <translation>금월 최소값</translation>
    </message>
    <message>
        <source>Month Avarge Value</source>
        <translation>금월 평균값</translation>
    </message>
    <message>
        <source>Month accumulated Value</source>
        <translation>금월 적산값</translation>
    </message>
    <message>
        <source>Month Minimum Time</source>
        <translation>금월 최소값 시각</translation>
    </message>
    <message>
        <source>Month Maximum Time</source>
        <translation>금월 최대값 시각</translation>
    </message>
    <message>
        <source>Total Maximum Value</source>
        <translation>전체 최대값</translation>
    </message>
    <message>
        <source>Total Minimum Value</source>
        <translation>전체 최소값</translation>
    </message>
    <message>
        <source>Total Avarge Value</source>
        <translation>전체 평균값</translation>
    </message>
    <message>
        <source>Total accumulated Value</source>
        <translation>전체 적산값</translation>
    </message>
    <message>
        <source>Total Minimum Time</source>
        <translation>전체 최소값 시각</translation>
    </message>
    <message>
        <source>Total Maximum Time</source>
        <translation>전체 최대값 시각</translation>
    </message>
    <message>
        <source>On Count in this hour</source>
        <translation>시간 ON 횟수</translation>
    </message>
    <message>
        <source>Off Count in this hour</source>
        <translation>시간 OFF 횟수</translation>
    </message>
    <message>
        <source>On Duration in this hour</source>
        <translation>시간 ON 지속 시간</translation>
    </message>
    <message>
        <source>Off Duration in this hour</source>
        <translation>시간 OFF 지속 시간</translation>
    </message>
    <message>
        <source>Maximum Value of Week</source>
        <translation>금주 최대값</translation>
    </message>
    <message>
        <source>Minimum Value of Week</source>
        <translation>금주 최소값</translation>
    </message>
    <message>
        <source>Avarge Value of Week</source>
        <translation>금주 평균값</translation>
    </message>
    <message>
        <source>Accumulated Value of Week</source>
        <translation>금주 적산값</translation>
    </message>
    <message>
        <source>Minimum Value Time of Week</source>
        <translation>금주 최소값 시각</translation>
    </message>
    <message>
        <source>Maximum Value Time of Week</source>
        <translation>금주 최대값 시각</translation>
    </message>
    <message>
        <source>Year Maximum Value</source>
        <translation>금년 최대값</translation>
    </message>
    <message>
        <source>Year Minimum Value</source>
        <translation>금년 최소값</translation>
    </message>
    <message>
        <source>Year Avarge Value</source>
        <translation>금년 평균값</translation>
    </message>
    <message>
        <source>Year accumulated Value</source>
        <translation>금년 적산값</translation>
    </message>
    <message>
        <source>Year Minimum Time</source>
        <translation>금년 최소값 시각</translation>
    </message>
    <message>
        <source>Year Maximum Time</source>
        <translation>금년 최대값 시각</translation>
    </message>
    <message>
        <source>On Count in this year</source>
        <translation>금년 ON 횟수</translation>
    </message>
    <message>
        <source>Off Count in this year</source>
        <translation>금년 OFF 횟수</translation>
    </message>
    <message>
        <source>On Duration in this year</source>
        <translation>금년 ON 지속 시간</translation>
    </message>
    <message>
        <source>Off Duration in this year</source>
        <translation>금년 OFF 지속 시간</translation>
    </message>
    <message>
        <source>Update Time</source>
        <translation>갱신 시각</translation>
    </message>
    <message>
        <source>Comm State</source>
        <translation>통신 상태</translation>
    </message>
    <message>
        <source>Scan State</source>
        <translation>스캔 상태</translation>
    </message>
    <message>
        <source>Today Comm. Ratio</source>
        <translation>금일 통신율</translation>
    </message>
    <message>
        <source>Total Comm. Ratio</source>
        <translation>전체 통신율</translation>
    </message>
    <message>
        <source>Comm. Online Time</source>
        <translation>통신 연결 시각</translation>
    </message>
    <message>
        <source>Comm. Offline Time</source>
        <translation>통신 단절 시각</translation>
    </message>
    <message>
        <source>Driver State</source>
        <translation>드라이버 상태</translation>
    </message>
    <message>
        <source>HiHi</source>
        <translation>상상한</translation>
    </message>
    <message>
        <source>LowLow</source>
        <translation>하하한</translation>
    </message>
    <message>
        <source>Hi</source>
        <translation>상한</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>하한</translation>
    </message>
    <message>
        <source>Point Description</source>
        <translation>포인트 설명</translation>
    </message>
    <message>
        <source>DisplayName</source>
        <translation>표시 이름</translation>
    </message>
    <message>
        <source>Past Max Value</source>
        <translation>과거 최대값</translation>
    </message>
    <message>
        <source>Past Min Value</source>
        <translation>과거 최소값</translation>
    </message>
    <message>
        <source>Past Mean Value</source>
        <translation>과거 평균값</translation>
    </message>
    <message>
        <source>Past Accumulated Value</source>
        <translation>과거 적산값</translation>
    </message>
    <message>
        <source>Past Moment Value</source>
        <translation>과거 순시값</translation>
    </message>
    <message>
        <source>Latest Scan Time</source>
        <translation>최근 스캔 시각</translation>
    </message>
</context>
<context>
    <name>OperationBanner</name>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
    </message>
</context>
<context>
    <name>OperationDock</name>
    <message>
        <source>Operations</source>
        <translation>조작 이력</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>시각</translation>
    </message>
    <message>
        <source>User</source>
        <translation>사용자</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>명령</translation>
    </message>
    <message>
        <source>Outcome</source>
        <translation>결과</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>사유</translation>
    </message>
    <message>
        <source>%1 and %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>OperationEditor</name>
    <message>
        <source>Times</source>
        <translation>배율</translation>
    </message>
    <message>
        <source>None</source>
        <translation>없음</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>값</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>키</translation>
    </message>
    <message>
        <source>No command</source>
        <translation>명령 없음</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>선택</translation>
    </message>
    <message>
        <source>Operate</source>
        <translation>조작</translation>
    </message>
    <message>
        <source>Set a set point</source>
        <translation>설정값 지정</translation>
    </message>
    <message>
        <source>Raise</source>
        <translation>증가</translation>
    </message>
    <message>
        <source>Lower</source>
        <translation>감소</translation>
    </message>
    <message>
        <source>Enter a value by hand</source>
        <translation>수동 값 입력</translation>
    </message>
    <message>
        <source>is fixed</source>
        <translation>고정값</translation>
    </message>
    <message>
        <source>is entered</source>
        <translation>직접 입력</translation>
    </message>
    <message>
        <source>is entered within limits</source>
        <translation>한계값 안에서 입력</translation>
    </message>
    <message>
        <source>is chosen from a list</source>
        <translation>목록에서 선택</translation>
    </message>
    <message>
        <source>What is sent is what was entered times this.</source>
        <translation>입력한 값에 이 배율을 곱한 값을 전송합니다.</translation>
    </message>
    <message>
        <source>From</source>
        <translation>최소값</translation>
    </message>
    <message>
        <source>To</source>
        <translation>최대값</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>증감 단위</translation>
    </message>
    <message>
        <source>Decimals</source>
        <translation>소수 자릿수</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>텍스트</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>추가</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>제거</translation>
    </message>
    <message>
        <source>Object</source>
        <translation>객체</translation>
    </message>
    <message>
        <source>Name the object that the command goes to.</source>
        <translation>명령을 보낼 객체를 지정하십시오.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number.</source>
        <translation>&quot;%1&quot;은(는) 숫자가 아닙니다.</translation>
    </message>
    <message>
        <source>The lower limit lies above the upper one.</source>
        <translation>하한이 상한보다 큽니다.</translation>
    </message>
    <message>
        <source>Another shape has this key: %1.</source>
        <translation>다른 도형에서 이 키를 사용합니다: %1.</translation>
    </message>
    <message>
        <source>State %1</source>
        <translation>상태 %1</translation>
    </message>
</context>
<context>
    <name>OperationNames</name>
    <message>
        <source>Select</source>
        <translation>선택</translation>
    </message>
    <message>
        <source>Operate</source>
        <translation>조작</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Setpoint</source>
        <translation>설정값</translation>
    </message>
    <message>
        <source>Raise</source>
        <translation>증가</translation>
    </message>
    <message>
        <source>Lower</source>
        <translation>감소</translation>
    </message>
    <message>
        <source>Enter value</source>
        <translation>값 입력</translation>
    </message>
    <message>
        <source>Substitute</source>
        <translation>대체</translation>
    </message>
    <message>
        <source>End substitution</source>
        <translation>대체 해제</translation>
    </message>
    <message>
        <source>Inhibit</source>
        <translation>금지</translation>
    </message>
    <message>
        <source>Information tag</source>
        <translation>정보 태그</translation>
    </message>
    <message>
        <source>Change limit</source>
        <translation>한계값 변경</translation>
    </message>
    <message>
        <source>Change dead band</source>
        <translation>데드밴드 변경</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>스캔</translation>
    </message>
    <message>
        <source>Reconnect</source>
        <translation>재연결</translation>
    </message>
    <message>
        <source>Reset statistics</source>
        <translation>통계 초기화</translation>
    </message>
    <message>
        <source>Requested</source>
        <translation>요청됨</translation>
    </message>
    <message>
        <source>Sent</source>
        <translation>전송됨</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>완료</translation>
    </message>
    <message>
        <source>Not permitted</source>
        <translation>권한 없음</translation>
    </message>
    <message>
        <source>Inhibited</source>
        <translation>금지됨</translation>
    </message>
    <message>
        <source>Interlocked</source>
        <translation>인터록</translation>
    </message>
    <message>
        <source>Not confirmed</source>
        <translation>승인되지 않음</translation>
    </message>
    <message>
        <source>Not selected</source>
        <translation>선택되지 않음</translation>
    </message>
    <message>
        <source>Out of limits</source>
        <translation>한계값 벗어남</translation>
    </message>
    <message>
        <source>Refused</source>
        <translation>거부됨</translation>
    </message>
    <message>
        <source>Timed out</source>
        <translation>시간 초과</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>취소됨</translation>
    </message>
</context>
<context>
    <name>OperatorChanges</name>
    <message>
        <source>%1: the limits that an operator changed are not in force: %2</source>
        <translation>%1: 운전원이 변경한 한계값이 적용되지 않았습니다: %2</translation>
    </message>
    <message>
        <source>%1: the dead band that an operator changed is not in force: %2</source>
        <translation>%1: 운전원이 변경한 데드밴드가 적용되지 않았습니다: %2</translation>
    </message>
    <message>
        <source>alarms of this object are inhibited already</source>
        <translation>이 객체의 경보는 이미 금지되어 있습니다</translation>
    </message>
    <message>
        <source>alarms of this object are not inhibited</source>
        <translation>이 객체의 경보는 금지되어 있지 않습니다</translation>
    </message>
    <message>
        <source>a line is not scanned</source>
        <translation>통신 회선은 스캔하지 않습니다</translation>
    </message>
    <message>
        <source>this object is not scanned already</source>
        <translation>이 객체의 스캔은 이미 중지되어 있습니다</translation>
    </message>
    <message>
        <source>this object is scanned already</source>
        <translation>이 객체는 이미 스캔 중입니다</translation>
    </message>
    <message>
        <source>only the value of a point can be substituted</source>
        <translation>포인트의 값만 대체할 수 있습니다</translation>
    </message>
    <message>
        <source>the value does not fit the point</source>
        <translation>값이 포인트에 맞지 않습니다</translation>
    </message>
    <message>
        <source>this value is not substituted</source>
        <translation>이 값은 대체되어 있지 않습니다</translation>
    </message>
    <message>
        <source>a limit must be a number</source>
        <translation>한계값은 숫자여야 합니다</translation>
    </message>
    <message>
        <source>this object has no statistics so far</source>
        <translation>이 객체에는 아직 통계가 없습니다</translation>
    </message>
    <message>
        <source>a dead band is a number from 0 on, of an analog point</source>
        <translation>데드밴드는 아날로그 포인트의 0 이상인 숫자여야 합니다</translation>
    </message>
</context>
<context>
    <name>OperatorInputDialog</name>
    <message>
        <source>Command</source>
        <translation>명령</translation>
    </message>
    <message>
        <source>Present value:</source>
        <translation>현재값:</translation>
    </message>
    <message>
        <source>&amp;Reason:</source>
        <translation>사유(&amp;R):</translation>
    </message>
    <message>
        <source>&amp;Value:</source>
        <translation>값(&amp;V):</translation>
    </message>
    <message>
        <source>Limits:</source>
        <translation>한계값:</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <comment>limits of a number</comment>
        <translation>%1 ~ %2</translation>
    </message>
</context>
<context>
    <name>OperatorStation</name>
    <message>
        <source>&amp;Log on...</source>
        <translation>로그인(&amp;L)...</translation>
    </message>
    <message>
        <source>Change &amp;password...</source>
        <translation>비밀번호 변경(&amp;P)...</translation>
    </message>
    <message>
        <source>User &amp;accounts...</source>
        <translation>사용자 계정(&amp;A)...</translation>
    </message>
    <message>
        <source>&amp;Summary of all points</source>
        <translation>전체 포인트 요약(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Operations</source>
        <translation>조작 이력(&amp;O)</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>user, role</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Nobody is logged on</source>
        <translation>로그인한 사용자 없음</translation>
    </message>
    <message>
        <source>Log o&amp;ff</source>
        <translation>로그아웃(&amp;F)</translation>
    </message>
</context>
<context>
    <name>PageOperations</name>
    <message>
        <source>%1: what was entered is no number</source>
        <translation>%1: 입력한 값이 숫자가 아닙니다</translation>
    </message>
    <message>
        <source>%1: enter a number from %2 to %3</source>
        <translation>%1: %2부터 %3까지의 숫자를 입력하십시오</translation>
    </message>
    <message>
        <source>%1: there is no such object</source>
        <translation>%1: 해당 객체가 없습니다</translation>
    </message>
    <message>
        <source>%1: &quot;%2&quot;: its key does nothing: %3</source>
        <translation>%1: &quot;%2&quot;의 키는 작동하지 않습니다: %3</translation>
    </message>
    <message>
        <source>%1 is that of &quot;%2&quot;</source>
        <translation>%1은(는) &quot;%2&quot;의 키입니다</translation>
    </message>
    <message>
        <source>%1 is a key of the window</source>
        <translation>%1은(는) 창의 키입니다</translation>
    </message>
</context>
<context>
    <name>PasswordHash</name>
    <message>
        <source>libsodium could not be started</source>
        <translation>libsodium을 시작하지 못했습니다</translation>
    </message>
    <message>
        <source>there is too little memory to check a password</source>
        <translation>메모리가 부족하여 비밀번호를 확인할 수 없습니다</translation>
    </message>
</context>
<context>
    <name>PointBrowserDialog</name>
    <message>
        <source>Points</source>
        <translation>포인트</translation>
    </message>
    <message>
        <source>Filter: name, description or station</source>
        <translation>필터: 이름, 설명 또는 스테이션</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <comment>objects</comment>
        <translation>%2개 중 %1개</translation>
    </message>
    <message>
        <source>No point list is loaded, so there is nothing to choose from.</source>
        <translation>불러온 포인트 목록이 없어 선택할 항목이 없습니다.</translation>
    </message>
    <message>
        <source>The point list has no objects of the kinds that can be chosen here.</source>
        <translation>포인트 목록에 여기서 선택할 수 있는 종류의 항목이 없습니다.</translation>
    </message>
    <message>
        <source>No name, description or station contains &quot;%1&quot;.</source>
        <translation>이름, 설명 또는 스테이션에 &quot;%1&quot;이(가) 들어 있는 항목이 없습니다.</translation>
    </message>
</context>
<context>
    <name>PointDock</name>
    <message>
        <source>Points</source>
        <translation>포인트</translation>
    </message>
</context>
<context>
    <name>PointDrop</name>
    <message>
        <source>Show %1 instead of</source>
        <translation>다음 대신 %1 표시</translation>
    </message>
    <message>
        <source>As another curve</source>
        <translation>다른 곡선으로 추가</translation>
    </message>
</context>
<context>
    <name>PointSelectWidget</name>
    <message>
        <source>PointSelectWidget</source>
        <translation>포인트 선택</translation>
    </message>
    <message>
        <source>Point Name : </source>
        <translation>포인트 이름 : </translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
</context>
<context>
    <name>PointToolTipWidget</name>
    <message>
        <source>Name: </source>
        <translation>이름: </translation>
    </message>
    <message>
        <source>Discription: </source>
        <translation>설명: </translation>
    </message>
</context>
<context>
    <name>PointTree</name>
    <message>
        <source>Filter: name, description or station</source>
        <translation>필터: 이름, 설명 또는 스테이션</translation>
    </message>
    <message>
        <source>The project has no points.</source>
        <translation>프로젝트에 포인트가 없습니다.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <comment>points</comment>
        <translation>%2개 중 %1개</translation>
    </message>
</context>
<context>
    <name>PointTreeModel</name>
    <message>
        <source>(no station)</source>
        <translation>(스테이션 없음)</translation>
    </message>
    <message>
        <source>%1 in all</source>
        <comment>objects of a station</comment>
        <translation>모두 %1개</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <comment>objects of a station</comment>
        <translation>%2개 중 %1개</translation>
    </message>
    <message>
        <source>Digital point</source>
        <translation>디지털 포인트</translation>
    </message>
    <message>
        <source>Analog point</source>
        <translation>아날로그 포인트</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>장치</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>통신 회선</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>포인트</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>이름</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>설명</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>종류</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>번호</translation>
    </message>
</context>
<context>
    <name>PositionAction</name>
    <message>
        <source>Position</source>
        <translation>위치</translation>
    </message>
</context>
<context>
    <name>ProjectManager</name>
    <message>
        <source>%1 can&apos;t be made: %2</source>
        <translation>%1을(를) 만들 수 없습니다: %2</translation>
    </message>
    <message>
        <source>%1 can&apos;t be written: %2</source>
        <translation>%1에 쓸 수 없습니다: %2</translation>
    </message>
    <message>
        <source>%1 is a file, not a folder.</source>
        <translation>%1은(는) 폴더가 아니라 파일입니다.</translation>
    </message>
    <message>
        <source>%1 holds a project already.</source>
        <translation>%1에 이미 프로젝트가 있습니다.</translation>
    </message>
    <message>
        <source>%1 is not empty.</source>
        <translation>%1이(가) 비어 있지 않습니다.</translation>
    </message>
    <message>
        <source>The folder %1 can&apos;t be made.</source>
        <translation>%1 폴더를 만들 수 없습니다.</translation>
    </message>
    <message>
        <source>No project is open.</source>
        <translation>열려 있는 프로젝트가 없습니다.</translation>
    </message>
    <message>
        <source>%1 was changed by another program and is left as it is. Open the project again.</source>
        <translation>다른 프로그램이 %1을(를) 변경하여 그대로 두었습니다. 프로젝트를 다시 여십시오.</translation>
    </message>
    <message>
        <source>The project has no page &quot;%1&quot;.</source>
        <translation>프로젝트에 &quot;%1&quot; 페이지가 없습니다.</translation>
    </message>
    <message>
        <source>The name &quot;%1&quot; is taken by a page that was removed; its file is still there.</source>
        <translation>&quot;%1&quot;은(는) 제거된 페이지의 이름이며 그 파일이 아직 남아 있어 사용할 수 없습니다.</translation>
    </message>
    <message>
        <source>The name &quot;%1&quot; is taken.</source>
        <translation>&quot;%1&quot;은(는) 이미 사용 중인 이름입니다.</translation>
    </message>
    <message>
        <source>%1 can&apos;t be renamed: %2</source>
        <translation>%1의 이름을 바꿀 수 없습니다: %2</translation>
    </message>
</context>
<context>
    <name>ProjectPanel</name>
    <message>
        <source>&amp;Open...</source>
        <translation>열기(&amp;O)...</translation>
    </message>
    <message>
        <source>Ne&amp;w...</source>
        <translation>새로 만들기(&amp;W)...</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>저장(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>이름(&amp;N):</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>폴더(&amp;F):</translation>
    </message>
    <message>
        <source>So&amp;urce:</source>
        <translation>데이터 소스(&amp;U):</translation>
    </message>
    <message>
        <source>&amp;Tick:</source>
        <translation>갱신 주기(&amp;T):</translation>
    </message>
    <message>
        <source>Security:</source>
        <translation>보안:</translation>
    </message>
    <message>
        <source>&amp;Passwords, roles and page rights</source>
        <translation>비밀번호, 역할 및 페이지 권한(&amp;P)</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>페이지</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>페이지</translation>
    </message>
    <message>
        <source>Opens first</source>
        <translation>처음 열림</translation>
    </message>
    <message>
        <source>&amp;Add page...</source>
        <translation>페이지 추가(&amp;A)...</translation>
    </message>
    <message>
        <source>&amp;Rename page...</source>
        <translation>페이지 이름 바꾸기(&amp;R)...</translation>
    </message>
    <message>
        <source>Re&amp;move page</source>
        <translation>페이지 제거(&amp;M)</translation>
    </message>
    <message>
        <source>Set as start pa&amp;ge</source>
        <translation>시작 페이지로 설정(&amp;G)</translation>
    </message>
    <message>
        <source>Open project</source>
        <translation>프로젝트 열기</translation>
    </message>
    <message>
        <source>Folder of the new project</source>
        <translation>새 프로젝트 폴더</translation>
    </message>
    <message>
        <source>Add page</source>
        <translation>페이지 추가</translation>
    </message>
    <message>
        <source>Name of the new page:</source>
        <translation>새 페이지 이름:</translation>
    </message>
    <message>
        <source>Rename page</source>
        <translation>페이지 이름 바꾸기</translation>
    </message>
    <message>
        <source>New name of &quot;%1&quot;:</source>
        <translation>&quot;%1&quot;의 새 이름:</translation>
    </message>
    <message>
        <source>%1[*] - Project</source>
        <translation>%1[*] - 프로젝트</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>프로젝트</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>simulation (none is named)</source>
        <translation>시뮬레이션(지정된 데이터 소스 없음)</translation>
    </message>
    <message>
        <source>From the next start of the project.</source>
        <translation>프로젝트를 다음에 시작할 때부터 적용됩니다.</translation>
    </message>
    <message>
        <source>start page</source>
        <translation>시작 페이지</translation>
    </message>
    <message>
        <source>The project &quot;%1&quot; was changed. Save it?</source>
        <translation>프로젝트 &quot;%1&quot;이(가) 변경되었습니다. 저장하시겠습니까?</translation>
    </message>
    <message>
        <source>New project</source>
        <translation>새 프로젝트</translation>
    </message>
    <message>
        <source>Name of the project:</source>
        <translation>프로젝트 이름:</translation>
    </message>
</context>
<context>
    <name>RotationAction</name>
    <message>
        <source>Rotation</source>
        <translation>회전</translation>
    </message>
</context>
<context>
    <name>RuntimeManager</name>
    <message>
        <source>only a unit is scanned</source>
        <translation>장치만 스캔할 수 있습니다</translation>
    </message>
    <message>
        <source>no source is known for this line</source>
        <translation>이 통신 회선의 데이터 소스를 알 수 없습니다</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>RuntimeWindow</name>
    <message>
        <source>&amp;Page</source>
        <translation>페이지(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>닫기(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>끝내기(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>보기(&amp;V)</translation>
    </message>
    <message>
        <source>Zoom to &amp;fit</source>
        <translation>창에 맞추기(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Own size</source>
        <translation>원래 크기(&amp;O)</translation>
    </message>
    <message>
        <source>Zoom &amp;in</source>
        <translation>확대(&amp;I)</translation>
    </message>
    <message>
        <source>Zoom &amp;out</source>
        <translation>축소(&amp;O)</translation>
    </message>
    <message>
        <source>F&amp;ull screen</source>
        <translation>전체 화면(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Layers</source>
        <translation>레이어(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Why does this shape look like this</source>
        <translation>이 도형이 이렇게 보이는 이유(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Tags of the page</source>
        <translation>페이지의 태그(&amp;T)</translation>
    </message>
    <message numerus="yes">
        <source>%n problem(s), the newest: </source>
        <translation>
            <numerusform>문제 %n건, 최근: </numerusform>
        </translation>
    </message>
    <message>
        <source>%1 ms, worst %2 ms</source>
        <translation>%1 ms, 최대 %2 ms</translation>
    </message>
    <message>
        <source>%1 values/s   %2 paints/s   lag %3   %4 points failed</source>
        <translation>값 %1개/초   그리기 %2회/초   지연 %3   이상 포인트 %4개</translation>
    </message>
    <message>
        <source>&amp;Run this project&apos;s scripts...</source>
        <translation>이 프로젝트의 스크립트 실행(&amp;R)...</translation>
    </message>
    <message>
        <source>&amp;Output of the scripts</source>
        <translation>스크립트 출력(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Alarms</source>
        <translation>경보(&amp;A)</translation>
    </message>
    <message>
        <source>No page shows %1</source>
        <translation>%1을(를) 표시하는 페이지가 없습니다</translation>
    </message>
    <message>
        <source>&amp;Operate</source>
        <translation>조작(&amp;O)</translation>
    </message>
    <message>
        <source>Log on to see the plant&apos;s pages (Ctrl+L).</source>
        <translation>설비 페이지를 보려면 로그인하십시오(Ctrl+L).</translation>
    </message>
    <message>
        <source>No page is open.</source>
        <translation>열려 있는 페이지가 없습니다.</translation>
    </message>
</context>
<context>
    <name>ScadaEventActionInterface</name>
    <message>
        <source>none</source>
        <translation>없음</translation>
    </message>
    <message>
        <source>Mouse Release</source>
        <translation>마우스 버튼 놓기</translation>
    </message>
    <message>
        <source>Mouse Double Click</source>
        <translation>마우스 두 번 클릭</translation>
    </message>
    <message>
        <source>Mouse Hover</source>
        <translation>마우스 올리기</translation>
    </message>
    <message>
        <source>Mouse Leave</source>
        <translation>마우스 벗어나기</translation>
    </message>
    <message>
        <source>Key Press</source>
        <translation>키 누르기</translation>
    </message>
    <message>
        <source>Canvas Load</source>
        <translation>페이지 열기</translation>
    </message>
    <message>
        <source>Canvas Unload</source>
        <translation>페이지 닫기</translation>
    </message>
    <message>
        <source>Mouse Press</source>
        <translation>마우스 버튼 누르기</translation>
    </message>
    <message>
        <source>Mouse Right Button Release</source>
        <translation>마우스 오른쪽 버튼 놓기</translation>
    </message>
    <message>
        <source>On Object Loading</source>
        <translation>객체를 불러올 때</translation>
    </message>
</context>
<context>
    <name>ScadaScriptAction</name>
    <message>
        <source>Script Action</source>
        <translation>스크립트 실행</translation>
    </message>
</context>
<context>
    <name>ScadaSummaryWidgetInterface</name>
    <message>
        <source>Scada Summary</source>
        <translation>SCADA 요약</translation>
    </message>
</context>
<context>
    <name>ScriptDock</name>
    <message>
        <source>Output of the scripts</source>
        <translation>스크립트 출력</translation>
    </message>
    <message>
        <source>Scripts have printed nothing yet.</source>
        <translation>아직 스크립트가 출력한 내용이 없습니다.</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>지우기</translation>
    </message>
</context>
<context>
    <name>ShapeBinding</name>
    <message>
        <source>%1, condition</source>
        <translation>%1, 조건</translation>
    </message>
    <message>
        <source>%1, value %2</source>
        <translation>%1, 값 %2</translation>
    </message>
</context>
<context>
    <name>ShelveDialog</name>
    <message>
        <source>Shelve</source>
        <translation>보류</translation>
    </message>
    <message>
        <source>&amp;Reason:</source>
        <translation>사유(&amp;R):</translation>
    </message>
    <message>
        <source>For how long</source>
        <translation>보류 기간</translation>
    </message>
    <message>
        <source>15 &amp;minutes</source>
        <translation>15분(&amp;M)</translation>
    </message>
    <message>
        <source>1 &amp;hour</source>
        <translation>1시간(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;8 hours</source>
        <translation>&amp;8시간</translation>
    </message>
    <message>
        <source>&amp;24 hours</source>
        <translation>&amp;24시간</translation>
    </message>
    <message>
        <source>&amp;Until</source>
        <translation>다음 시각까지(&amp;U)</translation>
    </message>
    <message>
        <source>Until</source>
        <translation>보류 종료 시각</translation>
    </message>
    <message>
        <source>Out of service</source>
        <translation>서비스 중지</translation>
    </message>
    <message>
        <source>That time has passed.</source>
        <translation>이미 지난 시각입니다.</translation>
    </message>
</context>
<context>
    <name>StateAction</name>
    <message>
        <source>State</source>
        <translation>상태</translation>
    </message>
</context>
<context>
    <name>SummaryCentralWidget</name>
    <message>
        <source>Points</source>
        <translation>포인트</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>what it does (keys)</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Go to page</source>
        <translation>페이지로 이동</translation>
    </message>
    <message>
        <source>Show the page of the point</source>
        <translation>포인트가 있는 페이지 표시</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>새로 고침</translation>
    </message>
    <message>
        <source>Filter and sort by what is there now</source>
        <translation>현재 내용으로 다시 필터링하고 정렬</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>복사</translation>
    </message>
    <message>
        <source>Copy the rows selected</source>
        <translation>선택한 행 복사</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>내보내기...</translation>
    </message>
    <message>
        <source>Write what is shown to a file</source>
        <translation>표시된 내용을 파일로 저장</translation>
    </message>
    <message>
        <source>Columns...</source>
        <translation>열 선택...</translation>
    </message>
    <message>
        <source>Choose the columns that are shown</source>
        <translation>표시할 열 선택</translation>
    </message>
    <message numerus="yes">
        <source>At most %n row(s) can be copied at once. Export writes any number to a file.</source>
        <translation>
            <numerusform>한 번에 최대 %n행까지 복사할 수 있습니다. 내보내기는 행 수에 제한이 없습니다.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n point(s)</source>
        <translation>
            <numerusform>포인트 %n개 중 %1개</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of %2 points written</source>
        <translation>포인트 %2개 중 %1개 저장</translation>
    </message>
    <message>
        <source>being sorted</source>
        <translation>정렬 중</translation>
    </message>
    <message>
        <source>rows stay in place while so many are selected</source>
        <translation>선택한 행이 많은 동안 행 순서를 유지합니다</translation>
    </message>
</context>
<context>
    <name>SummaryColumns</name>
    <message>
        <source>Name</source>
        <translation>이름</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>설명</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>스테이션</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>책임 구역</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>값</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>단위</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>시각</translation>
    </message>
    <message>
        <source>Marks</source>
        <translation>표지</translation>
    </message>
    <message>
        <source>Low low</source>
        <translation>하하한</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>하한</translation>
    </message>
    <message>
        <source>High</source>
        <translation>상한</translation>
    </message>
    <message>
        <source>High high</source>
        <translation>상상한</translation>
    </message>
    <message>
        <source>Min. today</source>
        <translation>금일 최소값</translation>
    </message>
    <message>
        <source>Max. today</source>
        <translation>금일 최대값</translation>
    </message>
    <message>
        <source>Mean today</source>
        <translation>금일 평균값</translation>
    </message>
    <message>
        <source>Changes today</source>
        <translation>금일 변화 횟수</translation>
    </message>
    <message>
        <source>On today</source>
        <translation>금일 ON 지속 시간</translation>
    </message>
</context>
<context>
    <name>SummaryFilterBar</name>
    <message>
        <source>Station</source>
        <translation>스테이션</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>책임 구역</translation>
    </message>
    <message>
        <source>Only &amp;marked</source>
        <translation>표지가 있는 포인트만(&amp;M)</translation>
    </message>
    <message>
        <source>Only &amp;unreliable</source>
        <translation>신뢰할 수 없는 포인트만(&amp;U)</translation>
    </message>
    <message>
        <source>Search in names, descriptions, stations and areas</source>
        <translation>이름, 설명, 스테이션 및 책임 구역에서 찾기</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>찾기</translation>
    </message>
    <message>
        <source>All stations</source>
        <translation>모든 스테이션</translation>
    </message>
    <message>
        <source>No station</source>
        <translation>스테이션 없음</translation>
    </message>
    <message>
        <source>All areas</source>
        <translation>모든 구역</translation>
    </message>
    <message>
        <source>No area</source>
        <translation>구역 없음</translation>
    </message>
</context>
<context>
    <name>SummaryModel</name>
    <message>
        <source>Time zone: %1</source>
        <translation>시간대: %1</translation>
    </message>
</context>
<context>
    <name>TagDock</name>
    <message>
        <source>Tags of the page</source>
        <translation>페이지의 태그</translation>
    </message>
    <message>
        <source>Filter: any text of any column</source>
        <translation>필터: 모든 열의 텍스트</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>복사</translation>
    </message>
</context>
<context>
    <name>TagField</name>
    <message>
        <source>Type, drop or browse a point</source>
        <translation>포인트를 입력하거나 끌어다 놓거나 찾아보십시오</translation>
    </message>
    <message>
        <source>This is a number, not a point.</source>
        <translation>포인트가 아니라 숫자입니다.</translation>
    </message>
    <message>
        <source>The point list has no &quot;%1&quot;.</source>
        <translation>포인트 목록에 &quot;%1&quot;이(가) 없습니다.</translation>
    </message>
</context>
<context>
    <name>TagTableModel</name>
    <message>
        <source>Tag</source>
        <translation>태그</translation>
    </message>
    <message>
        <source>Id</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>필드</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>값</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>품질</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>시간</translation>
    </message>
    <message>
        <source>Shape</source>
        <translation>도형</translation>
    </message>
    <message>
        <source>Binding</source>
        <translation>바인딩</translation>
    </message>
    <message>
        <source>names no known object</source>
        <translation>알려진 객체가 아님</translation>
    </message>
</context>
<context>
    <name>TextAction</name>
    <message>
        <source>Text</source>
        <translation>텍스트</translation>
    </message>
</context>
<context>
    <name>TrendAction</name>
    <message>
        <source>Trend</source>
        <translation>트렌드</translation>
    </message>
</context>
<context>
    <name>TrustBar</name>
    <message>
        <source>This project&apos;s scripts don&apos;t run. Scripts can do whatever you can; run them only if you trust where %1 comes from.</source>
        <translation>이 프로젝트의 스크립트는 실행되지 않습니다. 스크립트는 사용자가 할 수 있는 모든 일을 할 수 있으므로 %1의 출처를 신뢰할 때만 실행하십시오.</translation>
    </message>
    <message>
        <source>&amp;Run scripts</source>
        <translation>스크립트 실행(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Don&apos;t run</source>
        <translation>실행하지 않음(&amp;D)</translation>
    </message>
</context>
<context>
    <name>UnloadedAction</name>
    <message>
        <source>Not loaded</source>
        <translation>불러오지 못함</translation>
    </message>
</context>
<context>
    <name>UserConfirmDialog</name>
    <message>
        <source>User Confirm</source>
        <translation>사용자 확인</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>명령</translation>
    </message>
    <message>
        <source>.........</source>
        <translation>.........</translation>
    </message>
    <message>
        <source>User :</source>
        <translation>사용자 :</translation>
    </message>
    <message>
        <source>Password :</source>
        <translation>비밀번호 :</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>실패</translation>
    </message>
</context>
<context>
    <name>VisibilityAction</name>
    <message>
        <source>Visibility</source>
        <translation>표시 여부</translation>
    </message>
</context>
</TS>
